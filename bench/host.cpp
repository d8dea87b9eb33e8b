#include "host.h"

#include <cstdio>
#include <cstdlib>

namespace bench {

namespace {

qint64 s_callbacks = 0;

int countCallback(int /*deviceNo*/, int /*stationNo*/, QString & /*name*/, int /*address*/)
{
    ++s_callbacks;
    return 0;
}

unsigned char *bytes(QByteArray &array)
{
    return reinterpret_cast<unsigned char *>(array.data());
}

} // namespace

Host::Host()
    : m_block(kSharedBlockSize, '\0')
    , m_recipe(2 * kRecipeWords, '\0')
{
    int status = 0;
    intf_setAddrValueChangeCallBack(&countCallback);
    const QByteArray properties =
        QByteArray::number(kDevice) + "#0#0#3#" + QByteArray::number(kBlockWords);
    intf_initProperty(bytes(m_block), 0, bytes(m_recipe), &status, properties.constData(),
                      &m_blockLock);
}

Host::~Host()
{
    intf_setAddrValueChangeCallBack(nullptr);
    intf_initProperty(nullptr, 0, nullptr, nullptr, "", nullptr);
}

qint64 Host::callbacks()
{
    return s_callbacks;
}

unsigned char &Host::recipeWriteRequest()
{
    return bytes(m_block)[kRecipeWriteByte];
}

unsigned char &Host::recipeReadRequest()
{
    return bytes(m_block)[kRecipeReadByte];
}

void Host::refuse(const QByteArray &bytes) const
{
    std::fprintf(stderr, "an answer of %d bytes was rejected: %s\n", static_cast<int>(bytes.size()),
                 m_requestText.toLatin1().constData());
    std::exit(EXIT_FAILURE);
}

KEY_ADDRESS key(int station, const char *registerName, int address, int count)
{
    KEY_ADDRESS key{};
    key.stationNo = station;
    key.regName = QString::fromLatin1(registerName);
    key.startAddr = address;
    key.bitFlag = key.regName.endsWith(QLatin1String("_bit")) ? -1 : 0;
    key.count = count;
    return key;
}

} // namespace bench
