#include "panel_write.h"

#include "answers.h"

namespace bench {

namespace {

const char *registerOf(Written written)
{
    switch (written) {
    case Written::Relay:
        return "M_bit";
    case Written::DataBit:
        return "D_bit";
    case Written::Word:
    case Written::Block:
        break;
    }
    return "D_W";
}

} // namespace

PanelWrite::PanelWrite(Written written)
    : m_registerName(QString::fromLatin1(registerOf(written)))
    , m_count(written == Written::Block ? Host::kBlockWords : 1)
    , m_written(writeAnswer(1, written == Written::Relay ? "wSS" : "wSB"))
{
    const bool isBit = written == Written::Relay || written == Written::DataBit;
    QList<KEY_ADDRESS> keys{key(1, registerOf(written), 0, m_count)};
    intf_addrMerge(keys);
    for (size_t turn = 0; turn < m_read.size(); ++turn) {
        const auto value = static_cast<quint16>(turn);
        m_read[turn] = readAnswer(1, QVector<quint16>(m_count, value));
        const QByteArray bit(1, static_cast<char>(value));
        m_values[turn] = isBit ? bit : (bit + '\0').repeated(m_count);
    }
    m_host.ask();
    m_host.answer(m_read[0]);
}

} // namespace bench
