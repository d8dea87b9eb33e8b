#include "fuzz/input.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cstdio>
#include <memory>

namespace {

bool replayFile(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        std::fprintf(stderr, "replay: cannot read %s\n", qPrintable(path));
        return false;
    }
    // Says which input it was where the next call does not return.
    std::fprintf(stderr, "%s\n", qPrintable(path));
    const QByteArray bytes = file.readAll();
    const auto size = static_cast<size_t>(bytes.size());
    const std::unique_ptr<uint8_t[]> exact(new uint8_t[size]);
    std::copy(bytes.begin(), bytes.end(), exact.get());
    LLVMFuzzerTestOneInput(exact.get(), size);
    return true;
}

/** @return how many inputs were run; negative where one could not be read. */
int replay(const QString &path)
{
    if (!QFileInfo(path).isDir()) {
        return replayFile(path) ? 1 : -1;
    }
    int count = 0;
    const QFileInfoList files = QDir(path).entryInfoList(QDir::Files, QDir::Name);
    for (const QFileInfo &file : files) {
        if (!replayFile(file.filePath())) {
            return -1;
        }
        ++count;
    }
    return count;
}

} // namespace

/** replay_TARGET FILE|DIRECTORY...: runs inputs through a fuzz target without a fuzzer. */
int main(int argc, char **argv)
{
    int count = 0;
    for (int i = 1; i < argc; ++i) {
        const int replayed = replay(QString::fromLocal8Bit(argv[i]));
        if (replayed < 0) {
            return 1;
        }
        count += replayed;
    }
    if (count == 0) {
        std::fprintf(stderr, "replay: no inputs\n");
        return 1;
    }
    std::printf("%d inputs\n", count);
    return 0;
}
