#include "model/register_name.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace model {

int registerPlace(const std::string &name)
{
    static const std::array<const char *, 16> names = {
        "D_W",   "C_W",   "T_W",   "K_W",   "P_W",   "F_W", "L_W", "M_W",
        "P_bit", "K_bit", "M_bit", "L_bit", "F_bit", "TX",  "CX",  "D_bit"};
    const auto found = std::find(names.begin(), names.end(), name);
    return found == names.end() ? -1 : static_cast<int>(std::distance(names.begin(), found));
}

bool isContact(const std::string &name)
{
    return name == "TX" || name == "CX";
}

bool isBitName(const std::string &name)
{
    return name.find("_bit") != std::string::npos;
}

bool isWordRegister(const std::string &name)
{
    return registerPlace(name) >= 0 && !isContact(name) && !isBitName(name);
}

std::string deviceLetter(const std::string &name)
{
    return name.substr(0, name.find('_'));
}

std::string readDevice(const std::string &name)
{
    return isContact(name) ? name : deviceLetter(name) + "W";
}

std::string writeDevice(const std::string &name)
{
    if (isContact(name)) {
        return name;
    }
    return deviceLetter(name) + (isBitName(name) && name != "D_bit" ? "X" : "W");
}

} // namespace model
