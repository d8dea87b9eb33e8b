#include "model/operation.h"

#include "model/register_name.h"

#include <algorithm>
#include <array>
#include <sstream>

namespace model {

namespace {

constexpr std::array<const char *, 12> kActs = {"start",  "listen",    "monitor", "recipe",
                                                "buffer", "ask",       "write",   "once",
                                                "look",   "handshake", "send",    "answer"};
constexpr std::array<const char *, 12> kFaults = {"",      "foreign", "odd",   "refused",
                                                  "nak",   "silent",  "check", "lower",
                                                  "short", "long",    "noetx", "noise"};

template <std::size_t Size>
int placeIn(const std::array<const char *, Size> &names, const std::string &name)
{
    const auto found = std::find(names.begin(), names.end(), name);
    return found == names.end() ? -1 : static_cast<int>(found - names.begin());
}

std::string textOf(const Range &range)
{
    return std::to_string(range.station) + "/" + range.name + ":" + std::to_string(range.start) +
           "*" + std::to_string(range.count);
}

bool readRange(std::istream &in, Range &range)
{
    char slash = '\0';
    char star = '\0';
    in >> range.station >> slash;
    std::getline(in, range.name, ':');
    in >> range.start >> star >> range.count;
    return !in.fail() && slash == '/' && star == '*';
}

bool readItem(const std::string &word, Operation &operation)
{
    std::istringstream in(word);
    Range range;
    int device = 0;
    int place = 0;
    char at = '\0';
    char equals = '\0';
    if (operation.act == Act::Recipe) {
        in >> device >> at >> place >> equals;
        if (at != '@' || equals != '=') {
            return false;
        }
        operation.devices.push_back(device);
        operation.places.push_back(place);
    }
    if (!readRange(in, range)) {
        return false;
    }
    operation.ranges.push_back(range);
    return true;
}

bool readNumber(std::istream &in, const char *name, int &number)
{
    std::string word;
    return static_cast<bool>(in >> word >> number) && word == name;
}

/** Everything behind the name of the step. */
bool readRest(std::istream &in, Operation &operation)
{
    std::string word;
    switch (operation.act) {
    case Act::Start:
        if (!(in >> operation.text)) {
            return false;
        }
        return !(in >> word) || (word == "without" && in >> operation.missing);
    case Act::Monitor:
    case Act::Recipe:
        while (in >> word) {
            if (!readItem(word, operation)) {
                return false;
            }
        }
        return true;
    case Act::Write:
        return in >> word && readItem(word, operation) &&
               readNumber(in, "value", operation.value) && readNumber(in, "tag", operation.tag);
    case Act::ReadOnce:
        return in >> word && readItem(word, operation) && readNumber(in, "bits", operation.value) &&
               readNumber(in, "tag", operation.tag);
    case Act::Look:
        return in >> word && readItem(word, operation);
    case Act::Ask:
        return in >> operation.text >> operation.value &&
               (operation.text == "write" || operation.text == "read");
    case Act::Send:
        return true;
    case Act::Answer:
        if (!(in >> operation.value)) {
            return false;
        }
        if (in >> word) {
            operation.fault = static_cast<Fault>(placeIn(kFaults, word));
        }
        return operation.fault >= Fault::None;
    case Act::Listen:
    case Act::Buffer:
    case Act::Handshake:
        return static_cast<bool>(in >> operation.value);
    }
    return false;
}

} // namespace

Operation makeStep(Act act, int value, const std::string &text)
{
    Operation operation;
    operation.act = act;
    operation.value = value;
    operation.text = text;
    return operation;
}

Operation makeStep(Act act, const std::vector<Range> &ranges, int value)
{
    Operation operation = makeStep(act, value);
    operation.ranges = ranges;
    return operation;
}

std::string textOf(const Operation &operation)
{
    std::ostringstream out;
    out << (operation.within ? "within " : "") << kActs[static_cast<std::size_t>(operation.act)];
    if (!operation.text.empty()) {
        out << ' ' << operation.text;
    }
    if (!operation.missing.empty()) {
        out << " without " << operation.missing;
    }
    for (std::size_t i = 0; i < operation.ranges.size(); ++i) {
        out << ' ';
        if (operation.act == Act::Recipe) {
            out << operation.devices[i] << '@' << operation.places[i] << '=';
        }
        out << textOf(operation.ranges[i]);
    }
    if (operation.act == Act::Write) {
        out << " value " << operation.value << " tag " << operation.tag;
    } else if (operation.act == Act::ReadOnce) {
        out << " bits " << operation.value << " tag " << operation.tag;
    } else if (operation.act == Act::Listen || operation.act == Act::Buffer ||
               operation.act == Act::Handshake || operation.act == Act::Ask ||
               operation.act == Act::Answer) {
        out << ' ' << operation.value;
    }
    if (operation.fault != Fault::None) {
        out << ' ' << kFaults[static_cast<std::size_t>(operation.fault)];
    }
    return out.str();
}

bool mayBeWithin(const Operation &operation)
{
    const Act act = operation.act;
    return act == Act::Write || act == Act::ReadOnce || act == Act::Look || act == Act::Listen;
}

std::string textOf(const Sequence &sequence)
{
    std::string text;
    for (const Operation &operation : sequence) {
        text += (text.empty() ? "" : "; ") + textOf(operation);
    }
    return text;
}

std::optional<Sequence> sequenceOf(const std::string &text)
{
    Sequence sequence;
    std::istringstream steps(text);
    std::string step;
    while (std::getline(steps, step, ';')) {
        std::istringstream in(step);
        std::string name;
        in >> name;
        Operation operation;
        operation.within = name == "within";
        if (operation.within) {
            in >> name;
        }
        const int act = placeIn(kActs, name);
        operation.act = static_cast<Act>(act);
        if (act < 0 || !readRest(in, operation) || in >> name ||
            (operation.within && !mayBeWithin(operation))) {
            return std::nullopt;
        }
        sequence.push_back(operation);
    }
    return sequence;
}

unsigned wordOf(int value, int i)
{
    const auto seed = static_cast<unsigned>(value);
    return (seed * 0x0101U + static_cast<unsigned>(i) * (seed & 7U) * 0x0811U) & 0xFFFFU;
}

Bytes bytesOf(const Range &range, int value)
{
    Bytes bytes;
    for (int i = 0; i < range.count; ++i) {
        const unsigned word = wordOf(value, i);
        if (isWordRegister(range.name)) {
            bytes.push_back(static_cast<std::uint8_t>(word & 0xFFU));
            bytes.push_back(static_cast<std::uint8_t>(word >> 8U));
        } else {
            const unsigned bit = (word >> (i % 5)) & 3U;
            bytes.push_back(static_cast<std::uint8_t>(bit == 3 ? 1 : bit));
        }
    }
    return bytes;
}

Bytes recipeBytes(int value)
{
    return bytesOf({0, "D_W", 0, kRecipeBytes / 2}, value);
}

} // namespace model
