#include "host/capture/frame_cutter.h"

#include <utility>

namespace cnet {

namespace {

// As in all frames of a Cnet line. The library that this is part of stands on no other, so that the
// simulated PLC may use it and yet knows nothing of what the driver's side knows.
constexpr char kEtx = 0x03;
constexpr char kEot = 0x04;
constexpr char kEnq = 0x05;
constexpr char kAck = 0x06;
constexpr char kNak = 0x15;
constexpr int kCommandPosition = 3;
constexpr int kCheckCharacters = 2;

// How many bytes from here on are no control character, of which all that decide anything are.
int plainBytes(const QByteArray &bytes, int from, int most)
{
    const auto size = static_cast<int>(bytes.size());
    int at = from;
    while (at < size && at - from < most && static_cast<unsigned char>(bytes.at(at)) >= ' ') {
        ++at;
    }
    return at - from;
}

bool isHead(char byte)
{
    return byte == kEnq || byte == kAck || byte == kNak;
}

} // namespace

std::vector<QByteArray> FrameCutter::add(const QByteArray &bytes)
{
    std::vector<QByteArray> done;
    const auto size = static_cast<int>(bytes.size());
    int at = 0;
    while (at < size) {
        const int room = kLongest - 1 - static_cast<int>(m_bytes.size());
        const int plain = m_checkMissing > 0 ? 0 : plainBytes(bytes, at, room);
        if (plain > 0) {
            m_bytes.append(bytes.constData() + at, plain);
            at += plain;
        } else {
            addByte(bytes.at(at), done);
            ++at;
        }
    }
    return done;
}

QByteArray FrameCutter::takeRest()
{
    m_checkMissing = 0;
    return std::exchange(m_bytes, QByteArray());
}

// No frame has a head character inside: where one comes, another frame begins.
void FrameCutter::addByte(char byte, std::vector<QByteArray> &done)
{
    if (isHead(byte)) {
        cut(done);
    }
    m_bytes += byte;
    if (endsFrame(byte) || m_bytes.size() == kLongest) {
        cut(done);
    }
}

bool FrameCutter::inFrame() const
{
    return isHead(m_bytes.at(0));
}

bool FrameCutter::endsFrame(char byte)
{
    if (m_checkMissing > 0) {
        return --m_checkMissing == 0;
    }
    if (!inFrame() || byte != (m_bytes.at(0) == kEnq ? kEot : kEtx)) {
        return false;
    }
    // A lower-case command has a block check behind its end.
    const char command = m_bytes.size() > kCommandPosition ? m_bytes.at(kCommandPosition) : '\0';
    m_checkMissing = command >= 'a' && command <= 'z' ? kCheckCharacters : 0;
    return m_checkMissing == 0;
}

void FrameCutter::cut(std::vector<QByteArray> &done)
{
    if (!m_bytes.isEmpty()) {
        done.push_back(takeRest());
    }
}

} // namespace cnet
