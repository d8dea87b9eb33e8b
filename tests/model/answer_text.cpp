#include "model/answer_text.h"

namespace model {

namespace {

constexpr char kAck = '\x06';
constexpr char kNak = '\x15';
constexpr char kEtx = '\x03';

char oddCharacter(int value, int i)
{
    return static_cast<char>('!' + (wordOf(value, i) + static_cast<unsigned>(i)) % 94);
}

std::string dataText(const Frame &frame, const Operation &operation)
{
    const int closing = 3; // ETX bcc(2)
    const int size = frame.answerSize - frame.dataPlace - closing;
    std::string text;
    const int other = operation.value / kOtherWord - 1;
    for (int i = 0; static_cast<int>(text.size()) < size; ++i) {
        const unsigned word = wordOf(operation.value % kOtherWord, i);
        text += hexText(i == other ? word ^ 1U : word, size < 4 ? 2 : 4);
    }
    if (operation.fault == Fault::Odd) {
        for (std::size_t i = 0; i < text.size(); ++i) {
            text[i] = oddCharacter(operation.value, static_cast<int>(i));
        }
    }
    return text;
}

/** From ACK to the last character in front of ETX. */
std::string rightText(const Frame &frame, const Operation &operation)
{
    std::string text = kAck + frame.text.substr(1, 5);
    if (frame.dataPlace > 0 && frame.text[3] == 'r') {
        text += std::string("01") + hexText(static_cast<unsigned>(2 * frame.units), 2);
        text += dataText(frame, operation);
    }
    return text;
}

std::string withLowerCheck(std::string answer)
{
    for (std::size_t i = answer.size() - 2; i < answer.size(); ++i) {
        if (answer[i] >= 'A' && answer[i] <= 'F') {
            answer[i] = static_cast<char>(answer[i] - 'A' + 'a');
        }
    }
    return answer;
}

std::string spoilt(std::string text, const Operation &operation)
{
    switch (operation.fault) {
    case Fault::Foreign:
        text[2] = text[2] == '1' ? '2' : '1';
        break;
    case Fault::Refused:
        return withCheck(kNak + text.substr(1, 5) + "1132" + kEtx);
    case Fault::NakHead:
        text[0] = kNak;
        break;
    case Fault::Check: {
        std::string answer = withCheck(text + kEtx);
        answer.back() = answer.back() == '0' ? '1' : '0';
        return answer;
    }
    case Fault::Lower:
        return withLowerCheck(withCheck(text + kEtx));
    case Fault::Short:
        text.pop_back();
        break;
    case Fault::Long:
        text += '0';
        break;
    case Fault::NoEtx:
        return withCheck(text + '\x04');
    default:
        break;
    }
    return withCheck(text + kEtx);
}

} // namespace

std::string answerTo(const Frame *frame, const Operation &operation)
{
    if (operation.fault == Fault::Silent) {
        return std::string();
    }
    if (operation.fault == Fault::Noise) {
        std::string noise;
        for (int i = 0; i <= operation.value % 40; ++i) {
            noise += static_cast<char>(wordOf(operation.value, i) & 0xFFU);
        }
        return noise;
    }
    if (frame == nullptr) {
        return withCheck(std::string(1, kAck) + "01wSB" + kEtx);
    }
    if (frame->text.empty()) { // the handshake asks for no answer
        return operation.fault == Fault::Long ? std::string(1, kAck) : std::string();
    }
    return spoilt(rightText(*frame, operation), operation);
}

} // namespace model
