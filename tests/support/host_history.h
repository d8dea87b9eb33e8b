#pragma once

#include <algorithm>

#include <QtCore/QList>

#include "support/area_helpers.h"
#include "support/key_text.h"
#include "support/recipe_helpers.h"

/// A host's history in words, done on the driver step by step, parted by "; ":
///
///     start 60                   communication starts anew: words of a block
///     start 60 cache-only        panel writes stay in the cache
///     watch D_W:10*5 2/TX:3*1    monitored ranges; a station before "/"
///     items D_W:10*2             recipe items, one behind the other in the buffer
///     ask read                   or: ask write, ask nothing
///     write D_W:10*2=5           the panel writes; values follow from the number
///     once D_W:10*2              the panel asks for one reading
///     look D_W:10*2
///     send
///     answer 5                   the PLC's values follow from the number; last digit: of few units
///     answer 5 check             wrong check, or: short, silent, lower (digits), foreign (station)
///     poll 5                     send and answer
///     within write D_W:10*1=4    at the next call of the host's callback; more steps behind "&"
class HostHistory
{
public:
    enum Memory {
        kAsItIs,   ///< the driver remembers what it wants
        kForgetful ///< before each step it forgets all that went over the line
    };

    explicit HostHistory(Memory memory)
        : m_memory(memory)
        , m_out(FRAME_PRO())
        , m_answer(0)
    {
        current() = this;
        DriverFixture::hook() = &HostHistory::inCallback;
        run("start 60");
    }

    ~HostHistory()
    {
        DriverFixture::hook() = nullptr;
        current() = nullptr;
    }

    void run(const QByteArray &history)
    {
        const QList<QByteArray> steps = history.split(';');
        for (const QByteArray &untrimmed : steps) {
            const QByteArray step = untrimmed.trimmed();
            if (!step.isEmpty()) {
                DriverFixture::calls().clear();
                const QByteArray result = perform(step);
                m_seen.append(step + ": " + result + " | " + callsText().toLatin1() + " | " +
                              areaText());
            }
        }
    }

    /// Each step with all that the host sees of it and all that the cache holds after it.
    const QList<QByteArray> &seen() const { return m_seen; }

    /// The answer to the frame that was handed out last.
    QByteArray answerOf(int value, const QByteArray &fault = QByteArray()) const
    {
        if (fault == "silent") {
            return QByteArray();
        }
        const QByteArray station = fault == "foreign" ? "1F" : "01";
        QByteArray text = station + "wSB";
        if (m_out.unitCount != 0) {
            text = station + "rSB01FF" + digitsOf(value);
            text = fault == "lower" ? text.toLower().replace("rsb", "rSB") : text;
        }
        QByteArray answer = makeAnswer(text);
        if (fault == "check") {
            const int last = sizeOf(answer) - 1;
            answer[last] = answer.at(last) == '0' ? '1' : '0';
        }
        return fault == "short" ? answer.left(sizeOf(answer) - 1) : answer;
    }

private:
    static HostHistory *&current()
    {
        static HostHistory *history = nullptr;
        return history;
    }

    static void inCallback()
    {
        HostHistory *const history = current();
        if (history == nullptr || history->m_within.isEmpty()) {
            return;
        }
        const QList<QByteArray> steps = history->m_within.takeFirst().split('&');
        for (const QByteArray &step : steps) {
            DriverFixture::calls().append(
                latin((step.trimmed() + ": " + history->perform(step.trimmed())).constData()));
        }
    }

    QByteArray perform(const QByteArray &step)
    {
        if (m_memory == kForgetful) {
            driver.blockMemories = BlockMemories();
        }
        const QList<QByteArray> words = step.split(' ');
        const QByteArray &what = words.at(0);
        const QByteArray argument = words.value(1);
        if (what == "start") {
            return start(argument, words.value(2) == "cache-only");
        }
        if (what == "watch" || what == "items") {
            return what == "watch" ? watch(step.mid(6)) : items(words.mid(1));
        }
        if (what == "ask") {
            driver.shmBase[kRecipeWriteByte] = argument == "write" ? 1 : 0;
            driver.shmBase[kRecipeReadByte] = argument == "read" ? 1 : 0;
            return QByteArray();
        }
        if (what == "write" || what == "once" || what == "look") {
            return panelStep(what, argument);
        }
        if (what == "within") {
            m_within.append(step.mid(7));
            return QByteArray();
        }
        const QByteArray sent = what == "answer" ? QByteArray() : send();
        return what == "send" || sent == "nothing" ? sent : sent + answer(words);
    }

    static QByteArray start(const QByteArray &blockWords, bool cacheOnly)
    {
        int status = 0;
        const QByteArray props = QByteArray("7#") + (cacheOnly ? "1" : "0") + "#0#3#" + blockWords;
        intf_initProperty(driver.shmBase, 0, driver.rcpBuffer, &status, props.constData(),
                          driver.shmMutex);
        return QByteArray();
    }

    static QByteArray watch(const QByteArray &ranges)
    {
        QList<KEY_ADDRESS> keys = keysOf(ranges);
        return QByteArray::number(intf_addrMerge(keys));
    }

    static QByteArray items(const QList<QByteArray> &ranges)
    {
        QVector<_RCP_VAR_PRO> list;
        int offset = 0;
        for (const QByteArray &text : ranges) {
            const KEY_ADDRESS range = keyOf(text);
            _RCP_VAR_PRO item = _RCP_VAR_PRO();
            item.deviceNo = 7;
            item.stationNo = range.stationNo;
            item.regName = range.regName;
            item.startAddr = range.startAddr;
            item.count = range.count;
            item.bufOffset = offset;
            offset += range.count;
            list.append(item);
        }
        return QByteArray::number(intf_setRcpAddress(list));
    }

    static QByteArray panelStep(const QByteArray &what, const QByteArray &argument)
    {
        const int equals = static_cast<int>(argument.indexOf('='));
        KEY_ADDRESS range = keyOf(equals < 0 ? argument : argument.left(equals));
        QByteArray bytes(kValueAreaSize, '\0');
        if (what == "once") {
            KEY_ADDRESS key = keyOf(argument);
            return QByteArray::number(intf_addConditionRead(key, 1));
        }
        if (what == "look") {
            intf_getData(range.stationNo, range.regName, range.startAddr, range.count,
                         DriverFixture::bytes(bytes));
            return bytes.left(2 * range.count).toHex();
        }
        const int value = argument.mid(equals + 1).toInt();
        for (int i = 0; i < 2 * range.count; ++i) {
            bytes[i] = static_cast<char>(value >> (i % 3) & 1);
        }
        return QByteArray::number(intf_setData(range.stationNo, range.regName, range.startAddr,
                                               range.count, DriverFixture::bytes(bytes), 2));
    }

    // Whatever lies in the host's record or text before the call must be gone, or be the same text.
    QByteArray send()
    {
        std::memset(m_out.sendBuf, 0xEE, sizeof m_out.sendBuf);
        std::memset(m_out.var.data, 0xEE, sizeof m_out.var.data);
        m_out.sendLen = m_out.recvLen = m_out.dataPos = m_out.unitCount = m_out.spare = -1;
        m_out.var.opKind = m_out.var.stationNo = m_out.var.startAddr = m_out.var.count = -1;
        if (intf_getSendFrame(m_out) == 0) {
            return "nothing";
        }
        return "sent " + usedHex(m_out.sendBuf) + ' ' + numbers() + ' ' +
               itemText(m_out.var).toLatin1() + ' ' + usedHex(m_out.var.data);
    }

    QByteArray numbers() const
    {
        QByteArray text;
        const int all[] = {m_out.sendLen,   m_out.recvLen, m_out.dataPos,
                           m_out.unitCount, m_out.spare,   m_out.var.opKind};
        for (const int number : all) {
            text += QByteArray::number(number) + ' ';
        }
        return text;
    }

    // A kilobyte up to its last byte that is not 0.
    static QByteArray usedHex(const unsigned char *bytes)
    {
        int used = kValueAreaSize;
        while (used > 0 && bytes[used - 1] == 0) {
            --used;
        }
        return hexOf(bytes, used);
    }

    QByteArray answer(const QList<QByteArray> &words)
    {
        QByteArray reply = answerOf(words.value(1).toInt(), words.value(2));
        if (++m_answer % 2 == 0) {
            m_errorText = latin("left over");
        }
        const int result = intf_dealRcvFrame(reply, m_errorText);
        return " answered " + QByteArray::number(result) + ' ' + m_errorText.toLatin1();
    }

    // What the PLC has at an address depends on the address alone: blocks that overlap agree. From
    // one ten of values to the next the words move by one place.
    QByteArray digitsOf(int value) const
    {
        const int length = m_out.recvLen - 13;
        if (length == 2) { // contacts
            return QByteArray::number(256 + value % 256, 16).right(2).toUpper();
        }
        QByteArray digits;
        for (int i = 0; sizeOf(digits) < length; ++i) {
            const int address = m_out.var.startAddr + i;
            const int other = address % 10 != value % 10 ? 0 : (address % 2 == 0 ? 0xA000 : 1);
            const int word = (address + value / 10) % 64 ^ other;
            digits += QByteArray::number(65536 + word, 16).right(4);
        }
        return digits.toUpper();
    }

    static QByteArray areaText()
    {
        QByteArray text;
        const QList<_DATA_> &area = driver.dataArea;
        for (const _DATA_ &record : area) {
            text += recordText(record) + ' ';
        }
        return text;
    }

    const Memory m_memory;
    DriverFixture m_fixture;
    FRAME_PRO m_out;
    QString m_errorText;
    int m_answer;
    QList<QByteArray> m_within; ///< waits for the next callbacks
    QList<QByteArray> m_seen;

    Q_DISABLE_COPY(HostHistory)
};

inline QList<QByteArray> seenIn(const QByteArray &history, HostHistory::Memory memory)
{
    HostHistory host(memory);
    host.run(history);
    return host.seen();
}

/// A host must not see whether the driver remembers.
inline void compareWithForgetful(const QByteArray &history)
{
    const QList<QByteArray> kept = seenIn(history, HostHistory::kAsItIs);
    const QList<QByteArray> forgetful = seenIn(history, HostHistory::kForgetful);
    for (int i = 0; i < sizeOf(kept); ++i) {
        if (kept.at(i) != forgetful.value(i)) {
            qDebug("step %d of: %s", i, history.constData());
        }
        QCOMPARE(kept.at(i), forgetful.value(i));
    }
}
