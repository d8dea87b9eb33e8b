#include "host/driver/driver_session.h"

#include <algorithm>
#include <array>
#include <utility>

namespace cnet {

namespace {

const int kRecipeBytes = 2 * DriverSession::kRecipeWords;

// What one call may copy into a value area: that many words, or bits at a byte each.
const int kWordsOfCall = kValueAreaSize / 2;
const int kBitsOfCall = kValueAreaSize;

unsigned char *bytes(QByteArray &area)
{
    return reinterpret_cast<unsigned char *>(area.data());
}

} // namespace

DriverSession *DriverSession::s_current = nullptr;

QByteArray DriverProperties::text() const
{
    const int spare = 0;
    return QString::fromLatin1("%1#%2#%3#%4#%5")
        .arg(deviceNumber)
        .arg(cacheOnlyWrites ? 1 : 0)
        .arg(spare)
        .arg(attempts)
        .arg(blockWords)
        .toLatin1();
}

DriverSession::DriverSession(const DriverFunctions &functions)
    : m_functions(functions)
    , m_sharedBlock(kSharedBlockSize, '\0')
    , m_recipeBuffer(kRecipeBytes, '\0')
{
    s_current = this;
}

DriverSession::~DriverSession()
{
    // The library stays loaded; it must not keep pointers to what is about to go.
    m_functions.setAddrValueChangeCallBack(nullptr);
    m_functions.initProperty(nullptr, 0, nullptr, nullptr, "", nullptr);
    s_current = nullptr;
}

void DriverSession::start(const DriverProperties &properties)
{
    int status = 0;
    const QByteArray text = properties.text();
    m_functions.setAddrValueChangeCallBack(&DriverSession::handleChange);
    m_functions.initProperty(bytes(m_sharedBlock), 0, bytes(m_recipeBuffer), &status,
                             text.constData(), &m_sharedBlockLock);
}

void DriverSession::setChangeHandler(ChangeHandler handler)
{
    m_changeHandler = std::move(handler);
}

int DriverSession::monitor(QList<KEY_ADDRESS> keys)
{
    return m_functions.addrMerge(keys);
}

QVector<quint16> DriverSession::values(int station, const QString &registerName, int start,
                                       int count, bool isBit) const
{
    QVector<quint16> values;
    values.reserve(count);
    QString name = registerName;
    std::array<unsigned char, kValueAreaSize> buffer{};
    while (values.size() < count) {
        const int done = static_cast<int>(values.size());
        const int part = std::min(count - done, isBit ? kBitsOfCall : kWordsOfCall);
        m_functions.getData(station, name, start + done, part, buffer.data());
        for (int i = 0; i < part; ++i) {
            const auto at = static_cast<size_t>(i);
            values.append(
                isBit ? static_cast<quint16>(buffer.at(at))
                      : static_cast<quint16>(buffer.at(2 * at) | buffer.at(2 * at + 1) << 8));
        }
    }
    return values;
}

unsigned char *DriverSession::sharedBlock()
{
    return bytes(m_sharedBlock);
}

unsigned char *DriverSession::recipeBuffer()
{
    return bytes(m_recipeBuffer);
}

int DriverSession::handleChange(int /*deviceNo*/, int stationNo, QString &name, int address)
{
    if (s_current != nullptr && s_current->m_changeHandler) {
        s_current->m_changeHandler(stationNo, name, address);
    }
    return 0;
}

} // namespace cnet
