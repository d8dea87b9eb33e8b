#include "exchange/soak/soak_register.h"

#include <algorithm>

namespace exchange::soak {

namespace {

using plc::PointKind;

constexpr int kHighestRelayBit = 255 * kBitsPerWord + 15;
constexpr int kHighestDataBit = 9999 * kBitsPerWord + 15;

std::vector<Register> makeRegisters()
{
    std::vector<Register> list;
    const auto add = [&list](const char *name, PointKind kind, int highest, bool through = false) {
        list.push_back({QString::fromLatin1(name), *name, kind, highest, through});
    };
    add("D_W", PointKind::Word, 9999);
    add("C_W", PointKind::Word, 255);
    add("T_W", PointKind::Word, 255);
    add("K_W", PointKind::Word, 31);
    add("P_W", PointKind::Word, 63);
    add("F_W", PointKind::Word, 255);
    add("L_W", PointKind::Word, 255);
    add("M_W", PointKind::Word, 255);
    for (const char *relay : {"P_bit", "K_bit", "M_bit", "L_bit", "F_bit"}) {
        add(relay, PointKind::Bit, kHighestRelayBit);
    }
    add("TX", PointKind::Contact, 255);
    add("CX", PointKind::Contact, 255);
    add("D_bit", PointKind::Bit, kHighestDataBit, true);
    return list;
}

} // namespace

const std::vector<Register> &registers()
{
    static const std::vector<Register> list = makeRegisters();
    return list;
}

const Register *registerNamed(const QString &name)
{
    const auto it = std::find_if(registers().begin(), registers().end(),
                                 [&name](const Register &reg) { return reg.name == name; });
    return it == registers().end() ? nullptr : &*it;
}

const Register &wordsOf(const Register &bits)
{
    const auto it =
        std::find_if(registers().begin(), registers().end(), [&bits](const Register &reg) {
            return reg.isWord() && reg.device == bits.device;
        });
    return bits.isBit() && it != registers().end() ? *it : bits;
}

QString text(const Range &range)
{
    return QString::fromLatin1("%1 %2 %3 x%4")
        .arg(QString::number(range.station), range.reg ? range.reg->name : QString(),
             QString::number(range.address), QString::number(range.count));
}

plc::Point pointOf(const Range &range, int offset)
{
    plc::Point point;
    point.device = range.reg->device;
    point.kind = range.reg->kind;
    point.address = range.address + offset;
    return point;
}

} // namespace exchange::soak
