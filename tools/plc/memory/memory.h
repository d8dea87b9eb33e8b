#pragma once

#include "plc/memory/point.h"

#include <array>
#include <optional>
#include <vector>

namespace plc {

/** Chooses which addresses exist. */
enum class Model {
    Full,  ///< every register an operator panel can name: D 0-9999, all other devices 0-255
    K120s, ///< the devices of a MASTER-K120S
};

/**
 * The devices of one PLC, initially all zero.
 *
 * If the device or the address does not exist, readers return nothing, and writers return false and
 * change nothing. The special relays F are read-only for masters; here they can be set like any
 * other device.
 */
class Memory
{
public:
    explicit Memory(Model model = Model::Full);

    Model model() const { return m_model; }

    /** Number of words of a device; 0 for a letter that is no device. */
    int wordCount(char device) const;
    /** Number of output contacts; 0 for every letter but T and C. */
    int contactCount(char device) const;

    std::optional<quint16> word(char device, int address) const;
    bool setWord(char device, int address, quint16 value);

    /** Bit `bit` of word `word`; 0 is the lowest, 15 the highest. */
    std::optional<bool> bit(char device, int word, int bit) const;
    bool setBit(char device, int word, int bit, bool value);

    /** Output contact of timer or counter `number`. */
    std::optional<bool> contact(char device, int number) const;
    bool setContact(char device, int number, bool value);

    /** The value of any point. Bits and contacts are 0 or 1; any value but 0 sets them. */
    std::optional<quint16> value(const Point &point) const;
    bool setValue(const Point &point, quint16 value);

private:
    struct Device
    {
        char letter;
        std::vector<quint16> words;
        std::vector<bool> contacts;
    };

    const Device *find(char letter) const;
    Device *find(char letter);

    Model m_model;
    std::array<Device, 8> m_devices;
};

} // namespace plc
