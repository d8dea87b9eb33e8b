#include "chance_frames.h"

#include "support/block_check.h"

namespace {

const char kEtx = 0x03;
const char kEot = 0x04;
const char kEnq = 0x05;
const char kAck = 0x06;
const char kNak = 0x15;

} // namespace

QByteArray ChanceFrames::next()
{
    if (m_random.chance(1)) {
        return QByteArray::number(m_random.below(1000000)) + "\r\n";
    }
    QByteArray frame;
    switch (m_random.weighed(std::initializer_list<int>{9, 9, 2})) {
    case 0:
        frame = request();
        break;
    case 1:
        frame = answer();
        break;
    default:
        frame = refusal();
        break;
    }
    if (m_random.chance(45)) {
        damage(frame);
    }
    return frame.isEmpty() ? QByteArray("?") : frame;
}

QByteArray ChanceFrames::number(int value, int digits) const
{
    return QByteArray::number(value, 16).toUpper().rightJustified(digits, '0');
}

// @param words 0: a bit
QByteArray ChanceFrames::data(int words)
{
    if (words == 0) {
        return number(m_random.chance(96) ? m_random.below(2) : m_random.below(256), 2);
    }
    QByteArray all;
    for (int i = 0; i < words; ++i) {
        all += number(m_random.below(0x10000), 4);
    }
    return m_random.chance(5) ? all.toLower() : all;
}

QByteArray ChanceFrames::name(bool bit)
{
    const QByteArray devices = m_random.chance(97) ? "PMKLFTC" : "DQx";
    const char device =
        !bit && m_random.chance(60) ? 'D' : devices.at(m_random.below(int(devices.size())));
    QByteArray address =
        QByteArray::number(m_random.below(m_random.pick({10, 300, 10000, 99999999})));
    address = address.rightJustified(m_random.between(1, 7), '0');
    if (bit && device != 'T' && device != 'C') {
        address += number(m_random.below(16), 1);
    }
    const char type = bit ? 'X' : 'W';
    const bool lower = m_random.chance(5);
    return QByteArray("%") + device +
           (lower ? QByteArray(1, type).toLower() : QByteArray(1, type)) + address;
}

QByteArray ChanceFrames::request()
{
    const bool single = m_random.chance(40);
    const bool writes = m_random.chance(40);
    const char command = m_random.chance(80) ? (writes ? 'w' : 'r') : (writes ? 'W' : 'R');
    const int station = m_random.chance(90) ? m_random.between(1, 3) : m_random.below(34);
    m_asked = {number(station, 2) + command + (single ? "SS" : "SB"), {}};
    const bool bit = single ? m_random.chance(50) : m_random.chance(2);
    const bool most = m_random.chance(3);
    const int blocks = !single ? 1 : most ? m_random.pick({15, 16, 17}) : m_random.between(1, 3);
    const int some = most ? m_random.pick({59, 60, 61}) : m_random.between(m_random.below(2), 6);
    const int words = bit ? 0 : single ? 1 : some;
    QByteArray text = m_asked.head + (single ? number(blocks, 2) : QByteArray());
    for (int i = 0; i < blocks; ++i) {
        const QByteArray its = name(m_random.chance(99) ? bit : !bit);
        text += number(int(its.size()), 2) + its;
        text += single ? QByteArray() : number(words, 2);
        text += writes ? data(words) : QByteArray();
        m_asked.words.append(words);
    }
    return framed(kEnq, text, kEot);
}

QByteArray ChanceFrames::answerTo(const Asked &asked)
{
    QByteArray text = asked.head;
    if (text.size() < 5 || text.at(2) == 'w' || text.at(2) == 'W') {
        return framed(kAck, text, kEtx);
    }
    // The larger CPUs leave the number of blocks out.
    if (text.endsWith('S') || m_random.chance(80)) {
        text += number(int(asked.words.size()), 2);
    }
    for (const int words : asked.words) {
        text += number(words == 0 ? 1 : 2 * words, 2) + data(words);
    }
    return framed(kAck, text, kEtx);
}

QByteArray ChanceFrames::answer()
{
    Asked asked = m_asked;
    if (m_random.chance(10)) {
        asked.head.replace(0, 2, number(m_random.between(1, 3), 2));
    }
    if (m_random.chance(5)) {
        asked.head.replace(2, 3, m_random.pick({"rSB", "rSS", "wSB", "RSB", "WSS"}));
    }
    if (m_random.chance(5)) {
        asked.words.append(m_random.below(4));
    }
    if (m_random.chance(5) && !asked.words.isEmpty()) {
        asked.words[0] = m_random.below(6);
    }
    return answerTo(asked);
}

QByteArray ChanceFrames::refusal()
{
    const int code = m_random.pick({0x0003, 0x0011, 0x1132, 0x1232, 0x1432, 0xABCD});
    return framed(kNak, m_asked.head + number(code, 4), kEtx);
}

void ChanceFrames::damage(QByteArray &frame)
{
    const int times = m_random.pick({1, 1, 1, 2, 3});
    for (int i = 0; i < times && !frame.isEmpty(); ++i) {
        const int at = m_random.below(int(frame.size()));
        const int near = qMin(at, m_random.between(1, 12)); // the head has more to go wrong
        const char byte = static_cast<char>(m_random.chance(30) ? m_random.below(256)
                                                                : m_random.between('%', 'z'));
        switch (m_random.below(9)) {
        case 0:
            frame[at] = byte;
            break;
        case 1:
            frame[near] = byte;
            break;
        case 2:
            frame.insert(near, byte);
            break;
        case 3:
            frame.remove(at, m_random.between(1, 3));
            break;
        case 4:
            frame.truncate(at);
            break;
        case 5:
            frame.chop(m_random.between(1, 4));
            break;
        case 6:
            frame.replace(qMax(0, int(frame.size()) - 2), 2, frame.right(2).toLower());
            break;
        case 7:
            frame[int(frame.size()) - 1] = byte;
            break;
        default:
            frame.insert(at, QByteArray(m_random.pick({1, 2, 300}), '0'));
            break;
        }
    }
}

// A block check where the command asks for one.
QByteArray ChanceFrames::framed(char head, const QByteArray &text, char tail) const
{
    QByteArray frame = head + text + tail;
    if (text.size() < 3 || text.at(2) < 'a') {
        return frame;
    }
    return frame + blockCheckOf(frame);
}
