#include "model/frame_text.h"

#include "model/register_name.h"

#include "support/block_check.h"

namespace model {

namespace {

constexpr char kEnq = '\x05';
constexpr char kEot = '\x04';
constexpr char kAck = '\x06';
constexpr char kEtx = '\x03';
constexpr int kWriteAnswer = 9;      // ACK st(2) wSB ETX bcc(2)
constexpr int kContactAnswer = 15;   // ACK st(2) rSS (4) data(2) ETX bcc(2)
constexpr int kBlockAnswer = 13;     // the same without data
constexpr int kAnswerData = 10;      // ACK st(2) rSB (4)
constexpr int kPlaceholderData = 18; // ENQ st(2) wSB 08 %MW addr(5) count(2)

/** Decimal digits in front of which zeros stand; of a longer number only the first are sent. */
std::string decimalText(int value, std::size_t digits)
{
    std::string text = std::to_string(value);
    if (text.size() < digits) {
        text.insert(0, digits - text.size(), '0');
    }
    return text.substr(0, digits);
}

std::string opening(const Item &item, const char *command)
{
    return kEnq + hexText(static_cast<unsigned>(item.range.station), 2) + command;
}

std::string blockPlace(const std::string &device, int start, int count)
{
    return "08%" + device + decimalText(start, 5) + hexText(static_cast<unsigned>(count), 2);
}

std::string wordData(const Item &item)
{
    std::string text;
    for (int i = 0; i < item.range.count; ++i) {
        const auto place = 2 * static_cast<std::size_t>(i);
        text += hexText(item.byteAt(place + 1), 2) + hexText(item.byteAt(place), 2);
    }
    return text;
}

Frame finish(const std::string &text, const Item &item)
{
    Frame frame;
    frame.text = withCheck(text + kEot);
    frame.answerSize = kWriteAnswer;
    frame.item = item;
    return frame;
}

Frame singleWrite(const Item &item)
{
    const int at = item.range.start;
    const std::string place =
        isContact(item.range.name)
            ? decimalText(at, 6)
            : decimalText(at / 16, 5) + hexText(static_cast<unsigned>(at % 16), 1);
    return finish(opening(item, "wSS") + "0109%" + writeDevice(item.range.name) + place +
                      (item.byteAt(0) != 0 ? "01" : "00"),
                  item);
}

/** What one character of a word read for a bit write counts as. */
int digitOf(int character)
{
    if (character < '0' || character == '@') {
        return 0;
    }
    return character < '@' ? character - '0' : character - 'A' + 10;
}

} // namespace

std::string hexText(unsigned value, int digits)
{
    std::string text;
    for (int i = digits - 1; i >= 0; --i) {
        text += "0123456789ABCDEF"[(value >> (4 * i)) & 15U];
    }
    return text;
}

std::string withCheck(const std::string &text)
{
    return text + blockCheckOf(text);
}

std::optional<Frame> readFrame(const Item &item)
{
    if (registerPlace(item.range.name) < 0) {
        return std::nullopt;
    }
    const std::string device = readDevice(item.range.name);
    const bool contact = isContact(item.range.name);
    const std::string text =
        contact ? opening(item, "rSS") + "0107%" + device + decimalText(item.range.start, 4)
                : opening(item, "rSB") + blockPlace(device, item.range.start, item.range.count);
    Frame frame = finish(text, item);
    frame.answerSize = contact ? kContactAnswer : kBlockAnswer + 4 * item.range.count;
    frame.dataPlace = kAnswerData;
    frame.units = item.range.count;
    return frame;
}

std::vector<Frame> writeFrames(const Item &item)
{
    const Range &range = item.range;
    if (registerPlace(range.name) < 0) {
        return {};
    }
    if (isContact(range.name) ||
        (isBitName(range.name) && range.count == 1 && range.name != "D_bit")) {
        return {singleWrite(item)};
    }
    if (!isBitName(range.name)) {
        return {finish(opening(item, "wSB") +
                           blockPlace(writeDevice(range.name), range.start, range.count) +
                           wordData(item),
                       item)};
    }

    Item words;
    words.range = range;
    words.range.name = deviceLetter(range.name) + "_W";
    words.range.start = range.start / 16;
    words.range.count = (range.count + range.count % 16 + 15) / 16;
    std::optional<Frame> read = readFrame(words);
    if (!read) {
        return {};
    }
    read->item = item;
    const auto digits = 4 * static_cast<std::size_t>(words.range.count);
    Frame write =
        finish(opening(item, "wSB") +
                   blockPlace(writeDevice(words.range.name), words.range.start, words.range.count) +
                   std::string(digits, '0'),
               item);
    write.dataPlace = kPlaceholderData;
    return {*read, write};
}

Verdict judge(const Frame &frame, const std::string &answer)
{
    if (answer.size() < 3 || static_cast<int>(answer.size()) != frame.answerSize) {
        return Verdict::Bad;
    }
    const std::string checked = answer.substr(0, answer.size() - 2);
    if (answer.front() != kAck || checked.back() != kEtx || withCheck(checked) != answer) {
        return Verdict::Bad;
    }
    return frame.units != 0 ? Verdict::Data : Verdict::Acknowledged;
}

void patchBits(const Frame &read, Frame &write, const std::string &answer)
{
    std::vector<int> digits(answer.begin(), answer.end());
    const auto data = static_cast<std::size_t>(read.dataPlace);
    const auto words = static_cast<std::size_t>(read.units);
    digits.resize(digits.size() + 4 * words + read.item.values.size() / 4 + 8, '0');
    // The digits of a word are turned round by twos, so that only a single word comes out right.
    for (std::size_t k = 0; k < words; ++k) {
        int *const word = &digits[data + 2 * k];
        const int turned[4] = {digitOf(word[3]), digitOf(word[2]), digitOf(word[1]),
                               digitOf(word[0])};
        std::copy(std::begin(turned), std::end(turned), word);
    }
    for (int i = 0; i < read.item.range.count; ++i) {
        const int bit = read.item.range.start % 16 + i;
        const auto place = data + static_cast<std::size_t>(bit / 4);
        if (place >= digits.size()) {
            break;
        }
        const int mask = 1 << (bit % 4);
        const bool on = read.item.byteAt(static_cast<std::size_t>(i)) != 0;
        digits[place] = on ? digits[place] | mask : digits[place] & ~mask;
    }
    for (std::size_t k = 0; k < 4 * words; ++k) {
        const int digit = digits[data + (k / 4) * 4 + 3 - k % 4];
        write.text[static_cast<std::size_t>(write.dataPlace) + k] =
            static_cast<char>(digit < 10 ? digit + '0' : digit - 10 + 'A');
    }
    write.text = withCheck(write.text.substr(0, write.text.size() - 2));
}

unsigned pairAt(const std::string &text, std::size_t place)
{
    const auto nibble = [&text](std::size_t at) -> unsigned {
        const unsigned character = at < text.size() ? static_cast<unsigned char>(text[at]) : 0U;
        if (character < '0' || character == '@') {
            return 0;
        }
        return character < '@' ? character - '0' : (character - 0x37U) & 15U;
    };
    if (place + 1 >= text.size()) {
        return place < text.size() ? nibble(place) * 16 % 256 : 0;
    }
    return (nibble(place) * 16 + nibble(place + 1)) % 256;
}

std::string describe(const Frame &frame, std::size_t answerSize)
{
    const Range &range = frame.item.range;
    if (registerPlace(range.name) < 0) {
        return std::string();
    }
    const std::string at = isBitName(range.name) ? std::to_string(range.start / 16) + "." +
                                                       std::to_string(range.start % 16)
                                                 : std::to_string(range.start);
    return std::to_string(range.station) + "#" + range.name + at + "(" +
           std::to_string(range.count) + ")(" + std::to_string(answerSize) + ")";
}

} // namespace model
