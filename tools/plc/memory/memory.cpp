#include "plc/memory/memory.h"

#include <algorithm>

namespace plc {

namespace {

struct Size
{
    int full;
    int k120s;
};

std::vector<quint16> words(Model model, Size size)
{
    return std::vector<quint16>(
        static_cast<std::size_t>(model == Model::K120s ? size.k120s : size.full));
}

std::vector<bool> timerContacts()
{
    return std::vector<bool>(256);
}

} // namespace

Memory::Memory(Model model)
    : m_model(model)
    , m_devices{{{'P', words(model, {256, 64}), {}},
                 {'M', words(model, {256, 192}), {}},
                 {'K', words(model, {256, 32}), {}},
                 {'L', words(model, {256, 64}), {}},
                 {'F', words(model, {256, 64}), {}},
                 {'T', words(model, {256, 256}), timerContacts()},
                 {'C', words(model, {256, 256}), timerContacts()},
                 {'D', words(model, {10000, 5000}), {}}}}
{}

const Memory::Device *Memory::find(char letter) const
{
    const auto *const it =
        std::find_if(m_devices.begin(), m_devices.end(),
                     [letter](const Device &device) { return device.letter == letter; });
    return it == m_devices.end() ? nullptr : &*it;
}

Memory::Device *Memory::find(char letter)
{
    return const_cast<Device *>(static_cast<const Memory *>(this)->find(letter));
}

int Memory::wordCount(char device) const
{
    const Device *const found = find(device);
    return found ? static_cast<int>(found->words.size()) : 0;
}

int Memory::contactCount(char device) const
{
    const Device *const found = find(device);
    return found ? static_cast<int>(found->contacts.size()) : 0;
}

std::optional<quint16> Memory::word(char device, int address) const
{
    const Device *const found = find(device);
    if (!found || address < 0 || address >= static_cast<int>(found->words.size())) {
        return std::nullopt;
    }
    return found->words[static_cast<std::size_t>(address)];
}

bool Memory::setWord(char device, int address, quint16 value)
{
    if (address < 0 || address >= wordCount(device)) {
        return false;
    }
    find(device)->words[static_cast<std::size_t>(address)] = value;
    return true;
}

std::optional<bool> Memory::bit(char device, int word, int bit) const
{
    const std::optional<quint16> value = this->word(device, word);
    if (!value || bit < 0 || bit >= kBitsPerWord) {
        return std::nullopt;
    }
    return ((static_cast<unsigned>(*value) >> static_cast<unsigned>(bit)) & 1U) != 0;
}

bool Memory::setBit(char device, int word, int bit, bool value)
{
    const std::optional<quint16> old = this->word(device, word);
    if (!old || bit < 0 || bit >= kBitsPerWord) {
        return false;
    }
    const unsigned mask = 1U << static_cast<unsigned>(bit);
    return setWord(device, word, static_cast<quint16>(value ? *old | mask : *old & ~mask));
}

std::optional<bool> Memory::contact(char device, int number) const
{
    if (number < 0 || number >= contactCount(device)) {
        return std::nullopt;
    }
    return find(device)->contacts[static_cast<std::size_t>(number)];
}

bool Memory::setContact(char device, int number, bool value)
{
    if (number < 0 || number >= contactCount(device)) {
        return false;
    }
    find(device)->contacts[static_cast<std::size_t>(number)] = value;
    return true;
}

std::optional<quint16> Memory::value(const Point &point) const
{
    if (point.address < 0) {
        return std::nullopt;
    }
    switch (point.kind) {
    case PointKind::Word:
        return word(point.device, point.address);
    case PointKind::Bit:
        return bit(point.device, point.address / kBitsPerWord, point.address % kBitsPerWord);
    case PointKind::Contact:
        return contact(point.device, point.address);
    }
    return std::nullopt;
}

bool Memory::setValue(const Point &point, quint16 value)
{
    if (point.address < 0) {
        return false;
    }
    switch (point.kind) {
    case PointKind::Word:
        return setWord(point.device, point.address, value);
    case PointKind::Bit:
        return setBit(point.device, point.address / kBitsPerWord, point.address % kBitsPerWord,
                      value != 0);
    case PointKind::Contact:
        return setContact(point.device, point.address, value != 0);
    }
    return false;
}

} // namespace plc
