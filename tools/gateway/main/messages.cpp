#include "gateway/main/messages.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace cnet::gateway {

namespace {

constexpr int kLongestLine = 2000;

bool writeAll(int descriptor, const QByteArray &bytes)
{
    for (qint64 done = 0; done < bytes.size();) {
        const ssize_t count =
            write(descriptor, bytes.constData() + done, static_cast<size_t>(bytes.size() - done));
        if (count < 0 && errno != EINTR) {
            return false;
        }
        done += std::max<ssize_t>(0, count);
    }
    return true;
}

// The journal says which file it reads; somebody may have put another one in its place.
bool readJournal()
{
    struct stat file
    {};
    const QByteArray named = qgetenv("JOURNAL_STREAM");
    return fstat(STDERR_FILENO, &file) == 0 &&
           named == QByteArray::number(quint64{file.st_dev}) + ':' +
                        QByteArray::number(quint64{file.st_ino});
}

// It puts the program's name in front by itself.
bool isJournal()
{
    static const bool is = readJournal();
    return is;
}

void writeLine(const QByteArray &prefix, const QString &text)
{
    QString line = text.left(kLongestLine);
    // What comes from a file or a line may hold anything, also what a terminal obeys.
    std::replace_if(
        line.begin(), line.end(),
        [](QChar letter) { return !letter.isPrint() && !letter.isSurrogate(); }, QLatin1Char('?'));
    writeAll(STDERR_FILENO, prefix + line.toUtf8() + '\n');
}

} // namespace

void say(const QString &text)
{
    sayEvent(Weight::Warning, text);
}

void sayEvent(Weight weight, const QString &text)
{
    const QByteArray inJournal = weight == Weight::Warning ? "<4>" : "<6>";
    writeLine(isJournal() ? inJournal : QByteArray("cnet-gateway: "), text);
}

void sayPlain(const QString &text)
{
    writeLine(isJournal() ? QByteArray("<4>") : QByteArray(), text);
}

bool print(const QString &text)
{
    return writeAll(STDOUT_FILENO, text.toUtf8());
}

} // namespace cnet::gateway
