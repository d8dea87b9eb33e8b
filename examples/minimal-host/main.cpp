// The smallest honest host: it asks the driver what it is, has three addresses monitored, carries
// frames between the driver and a PLC behind a TCP port, writes one word, and prints what changes.
//
//   minimal-host HOST PORT [ROUNDS]     exit code 0: fine, 1: no answers, 2: usage, 3: no
//   connection

#include <ls_master_k_cnet/ls_master_k_cnet.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTcpSocket>

#include <cstdio>

static const int kStation = 1;
static const int kAnswerMs = 1000;              // many times what a PLC needs
static const char kProperties[] = "0#0#0#3#60"; // 3 attempts for a frame, blocks of up to 60 words

static QList<QPair<QString, int>> changes; // register and address

// The driver calls this from within its own functions, and for a write of ours before the new value
// is there. So take a note, and read the value when the driver has returned.
static int noteChange(int, int, QString &name, int address)
{
    changes.append(qMakePair(name, address));
    return 0;
}

static int valueAt(QString name, int address)
{
    unsigned char bytes[2] = {}; // a word is two bytes, low one first; a bit or contact is one
    intf_getData(kStation, name, address, 1, bytes);
    return bytes[0] | bytes[1] << 8;
}

static void printChanges()
{
    for (const QPair<QString, int> &change : changes) {
        std::printf("%s:%d = %d\n", qPrintable(change.first), change.second,
                    valueAt(change.first, change.second));
    }
    changes.clear();
    std::fflush(stdout);
}

static bool addKey(QList<KEY_ADDRESS> &keys, const char *reg, const char *address, int count)
{
    KEY_ADDRESS key = KEY_ADDRESS();
    key.stationNo = kStation;
    key.regName = QString::fromLatin1(reg);
    key.count = count;
    QList<QString> bitRegisters;
    intf_getRegListByType(0, bitRegisters);
    const bool isBit = bitRegisters.contains(key.regName);
    key.bitFlag = isBit ? -1 : 0;
    const int fault = intf_checkAddrValidity(key.regName, QString::fromLatin1(address),
                                             key.startAddr, count, isBit ? 0 : 1);
    keys.append(key);
    return fault == kAddressValid;
}

// The answer, up to ETX and two check characters, or what of it came in time. FRAME_PRO::recvLen is
// the length of a good one; a refusal has another.
static QByteArray collectAnswer(QTcpSocket &line)
{
    QByteArray answer;
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < kAnswerMs && line.state() == QTcpSocket::ConnectedState) {
        line.waitForReadyRead(kAnswerMs - static_cast<int>(clock.elapsed()));
        answer += line.readAll();
        const auto etx = answer.indexOf('\x03');
        if (etx >= 0 && answer.size() >= etx + 3) {
            return answer;
        }
    }
    // Answers have no number: a late one would be taken for the answer to the next request. So
    // nothing is sent until the line was quiet for another timeout, and what arrives is dropped. An
    // answer that is even later would get through; the host library's guard has no such limit.
    for (int turn = 0; turn < 10 && line.waitForReadyRead(kAnswerMs); ++turn) {
        line.readAll();
    }
    return answer;
}

// One question and its answer; false when there is no use in going on.
static bool exchangeOnce(QTcpSocket &line)
{
    FRAME_PRO frame = FRAME_PRO();
    if (intf_getSendFrame(frame) == 0) {
        return true; // nothing to send now
    }
    line.write(reinterpret_cast<const char *>(frame.sendBuf), frame.sendLen);
    QByteArray answer = collectAnswer(line);
    QString request;
    const int result = intf_dealRcvFrame(answer, request);
    if (result != kAnswerGood) { // kAnswerResend: the driver hands the same frame out again
        std::fprintf(stderr, "no good answer to %s\n", qPrintable(request));
    }
    return result != kAnswerGivenUp && line.state() == QTcpSocket::ConnectedState;
}

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const quint16 port = arguments.value(2).toUShort();
    const int rounds = arguments.value(3, QLatin1String("5")).toInt();
    if (port == 0 || rounds < 1 || rounds > 100000) {
        std::fprintf(stderr, "usage: minimal-host HOST PORT [ROUNDS]\n");
        return 2;
    }
    QString description; // name of the driver behind its default line and network settings
    intf_getDriverParameter(description);
    std::printf("%s %s\n", qPrintable(description.section(QLatin1Char(','), 9, 9)),
                qPrintable(intf_getVersion()));

    // In this order: the start of communication forgets what is monitored.
    int status = 0;
    intf_initProperty(nullptr, 0, nullptr, &status, kProperties, nullptr);
    intf_setAddrValueChangeCallBack(&noteChange);
    QList<KEY_ADDRESS> keys;
    if (!addKey(keys, "D_W", "100", 4) || !addKey(keys, "M_bit", "3.5", 1) ||
        !addKey(keys, "TX", "7", 1)) {
        std::fprintf(stderr, "not an address of this driver\n");
        return 2;
    }
    const int blocks = intf_addrMerge(keys);

    QTcpSocket line;
    line.connectToHost(arguments.at(1), port);
    if (!line.waitForConnected(5000)) {
        std::fprintf(stderr, "%s\n", qPrintable(line.errorString()));
        return 3;
    }
    for (int turn = 0; turn < rounds * blocks; ++turn) {
        if (turn == blocks) { // all was read once: count D_W:101 up
            QString reg = QString::fromLatin1("D_W");
            const int next = valueAt(reg, 101) + 1;
            unsigned char word[2] = {static_cast<unsigned char>(next & 0xFF),
                                     static_cast<unsigned char>(next >> 8 & 0xFF)};
            intf_setData(kStation, reg, 101, 1, word, 0);
        }
        const bool more = exchangeOnce(line);
        printChanges();
        if (!more) {
            return 1;
        }
    }
    std::printf("%d rounds, D_W:101 is %d\n", rounds, valueAt(QString::fromLatin1("D_W"), 101));
    return 0;
}
