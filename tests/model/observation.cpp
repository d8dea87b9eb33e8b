#include "model/observation.h"

#include <algorithm>
#include <cctype>
#include <sstream>

#include "model/frame_text.h"

namespace model {

namespace {

std::string printable(const std::string &bytes)
{
    std::string text;
    for (const char character : bytes) {
        if (std::isprint(static_cast<unsigned char>(character)) != 0) {
            text += character;
        } else {
            text += "<" + hexText(static_cast<unsigned char>(character), 2) + ">";
        }
    }
    return text;
}

std::string textOf(const Observation &observation, std::size_t bytes)
{
    std::ostringstream out;
    out << observation.text;
    if (bytes > 0) {
        out << " values ";
        for (std::size_t i = 0; i < std::min(bytes, observation.bytes.size()); ++i) {
            out << hexText(observation.bytes[i], 2);
        }
    }
    for (const Notice &notice : observation.notices) {
        out << ", heard " << notice.device << ' ' << notice.station << ' ' << notice.name << ' '
            << notice.address;
        for (const std::uint8_t byte : notice.seen) {
            out << (&byte == notice.seen.data() ? " seen " : "") << hexText(byte, 2);
        }
    }
    return out.str();
}

bool isSame(const Notice &a, const Notice &b)
{
    return a.device == b.device && a.station == b.station && a.name == b.name &&
           a.address == b.address && a.seen == b.seen;
}

bool isSame(const Observation &expected, const Observation &seen)
{
    return expected.text == seen.text && expected.bytes.size() <= seen.bytes.size() &&
           std::equal(expected.bytes.begin(), expected.bytes.end(), seen.bytes.begin()) &&
           std::equal(expected.notices.begin(), expected.notices.end(), seen.notices.begin(),
                      seen.notices.end(),
                      [](const Notice &a, const Notice &b) { return isSame(a, b); });
}

} // namespace

Notice noticeWithin(const Observation &observation)
{
    return {0, 0, "done within" + textOf(observation, observation.bytes.size()), 0, {}};
}

std::string textOf(const SentFrame *frame)
{
    if (frame == nullptr) {
        return "0 nothing to send";
    }
    std::string text = "1 " + printable(frame->bytes);
    for (const auto &[name, number] : {std::pair<const char *, int>{" answer ", frame->answerSize},
                                       {" data ", frame->dataPlace},
                                       {" units ", frame->units},
                                       {" spare ", frame->spare}}) {
        text += name + std::to_string(number);
    }
    if (!frame->range.name.empty()) { // the handshake serves no request
        const Range &range = frame->range;
        text += " for " + std::to_string(range.station) + "/" + range.name + ":" +
                std::to_string(range.start) + "*" + std::to_string(range.count) + " tag " +
                std::to_string(frame->tag);
    }
    return text;
}

std::string textOf(int code, const std::string &text)
{
    return std::to_string(code) + " \"" + text + "\"";
}

std::string difference(const Observation &expected, const Observation &seen)
{
    if (isSame(expected, seen)) {
        return std::string();
    }
    std::size_t bytes = std::min(expected.bytes.size(), seen.bytes.size());
    while (bytes > 0 && expected.bytes[bytes - 1] == seen.bytes[bytes - 1]) {
        --bytes; // what is alike behind the last difference tells nothing
    }
    return "  model:  " + textOf(expected, bytes) + "\n  driver: " + textOf(seen, bytes);
}

} // namespace model
