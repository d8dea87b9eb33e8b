#include "host/driver/driver_core.h"

#include <algorithm>
#include <array>
#include <new>

namespace cnet {

namespace {

// What one call may copy into a value area: that many words, or bits at a byte each.
const int kWordsOfCall = kValueAreaSize / 2;
const int kBitsOfCall = kValueAreaSize;

} // namespace

QByteArray DriverProperties::text() const
{
    const int cacheOnlyWrites = 0;
    const int spare = 0;
    return QString::fromLatin1("%1#%2#%3#%4#%5")
        .arg(kDeviceNumber)
        .arg(cacheOnlyWrites)
        .arg(spare)
        .arg(attempts)
        .arg(blockWords)
        .toLatin1();
}

// Not touched before they are used: most sessions have no recipe.
DriverCore::Area DriverCore::zeros(size_t bytes)
{
    Area area(static_cast<unsigned char *>(std::calloc(bytes, 1)));
    if (!area) {
        throw std::bad_alloc();
    }
    return area;
}

DriverCore::DriverCore()
    : m_sharedBlock(zeros(kSharedBlockSize))
    , m_recipeBuffer(zeros(2 * kRecipeWords))
{
    m_changeSlot.setHandler([this](int, const QString &, int) { ++m_changes; });
}

DriverCore::~DriverCore()
{
    // The library may stay loaded; it must not keep pointers to what is about to go.
    if (m_loaded) {
        functions().setAddrValueChangeCallBack(nullptr);
        functions().initProperty(nullptr, 0, nullptr, nullptr, "", nullptr);
    }
}

bool DriverCore::load(const QString &path, QString &error)
{
    if (m_changeSlot.function() == nullptr) {
        error =
            QString::fromLatin1("cannot load the driver: %1 are loaded already").arg(kMostDrivers);
        return false;
    }
    m_loaded = m_library.load(path, error);
    return m_loaded;
}

void DriverCore::setBlockWords(int words)
{
    if (words != m_properties.blockWords) {
        DriverProperties properties = m_properties;
        properties.blockWords = words;
        start(properties);
    }
}

void DriverCore::start(const DriverProperties &properties)
{
    m_properties = properties;
    int status = 0;
    const QByteArray text = properties.text();
    functions().setAddrValueChangeCallBack(m_changeSlot.function());
    functions().initProperty(m_sharedBlock.get(), 0, m_recipeBuffer.get(), &status,
                             text.constData(), &m_sharedBlockLock);
}

void DriverCore::queueRead(const Item &item)
{
    KEY_ADDRESS key = keyOf(item);
    functions().addConditionRead(key, kOneOffRead);
}

void DriverCore::queueWrite(const Item &item, const QVector<quint16> &values)
{
    std::array<unsigned char, kValueAreaSize> data{};
    size_t at = 0;
    for (const quint16 value : values) {
        data.at(at++) = static_cast<unsigned char>(value & 0xFF);
        if (!item.reg.isBit()) {
            data.at(at++) = static_cast<unsigned char>(value >> 8);
        }
    }
    QString name = item.reg.name;
    functions().setData(item.station, name, item.start, item.count, data.data(), kWrite);
}

QVector<quint16> DriverCore::values(const Item &item) const
{
    QVector<quint16> values(item.count);
    QString name = item.reg.name;
    const bool isBit = item.reg.isBit();
    std::array<unsigned char, kValueAreaSize> buffer; // NOLINT: filled by the driver
    for (int done = 0; done < item.count;) {
        const int count = std::min(item.count - done, isBit ? kBitsOfCall : kWordsOfCall);
        functions().getData(item.station, name, item.start + done, count, buffer.data());
        for (int i = 0; i < count; ++i) {
            const auto at = static_cast<size_t>(i);
            values[done + i] =
                isBit ? static_cast<quint16>(buffer.at(at))
                      : static_cast<quint16>(buffer.at(2 * at) | buffer.at(2 * at + 1) << 8);
        }
        done += count;
    }
    return values;
}

KEY_ADDRESS keyOf(const Item &item)
{
    KEY_ADDRESS key{};
    key.stationNo = item.station;
    key.regName = item.reg.name;
    key.addrText = item.addressText(0);
    key.startAddr = item.start;
    key.bitFlag = item.reg.isBit() ? -1 : 0;
    key.count = item.count;
    return key;
}

} // namespace cnet
