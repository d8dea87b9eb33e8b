#include "host/tagfile/tag_row.h"

#include "host/address/address.h"
#include "host/address/value_text.h"
#include "host/text/near_miss.h"
#include "host/value/value_codec.h"

#include <limits>

namespace cnet {

TagRow::TagRow(const CsvFields &fields, const QVector<int> &places, const TagReading &reading,
               Findings &mistakes, Findings &warnings)
    : m_fields(fields)
    , m_places(places)
    , m_reading(reading)
    , m_mistakes(mistakes)
    , m_warnings(warnings)
{}

const CsvField &TagRow::field(TagColumn column) const
{
    return m_fields.at(m_places.at(static_cast<int>(column)));
}

// What is written wrongly is a mistake by itself, and not a second one.
QString TagRow::text(TagColumn column) const
{
    const CsvField &known = field(column);
    return known.trouble == CsvTrouble::None ? known.text.trimmed() : QString();
}

void TagRow::complain(TagColumn column, const QString &what)
{
    m_good = false;
    const CsvField &place = field(column);
    if (place.trouble == CsvTrouble::None) {
        m_mistakes.add({place.line, place.column, tagColumnName(column), what});
    }
}

void TagRow::warn(TagColumn column, const QString &what)
{
    const CsvField &place = field(column);
    m_warnings.add({place.line, place.column, tagColumnName(column), what});
}

std::optional<Tag> TagRow::read()
{
    readWriting();
    readName();
    readPlace();
    readType();
    readCount();
    readNumbers();
    readBounds();
    readAccess();
    readTexts();
    readWords();
    return m_good ? std::optional<Tag>(m_tag) : std::nullopt;
}

void TagRow::readWriting()
{
    for (const CsvField &known : m_fields.all) {
        if (known.trouble != CsvTrouble::None) {
            m_good = false;
            const int column = static_cast<int>(
                m_places.indexOf(static_cast<int>(&known - m_fields.all.constData())));
            m_mistakes.add({known.line, known.column,
                            column < 0 ? QString() : tagColumnName(static_cast<TagColumn>(column)),
                            csvTroubleText(known.trouble)});
        }
    }
}

void TagRow::readName()
{
    m_tag.name = text(TagColumn::Name);
    if (m_tag.name.isEmpty()) {
        complain(TagColumn::Name, QLatin1String("no name; every tag needs one, for example "
                                                "press.speed"));
    } else if (!isTagName(m_tag.name)) {
        complain(TagColumn::Name,
                 QString::fromLatin1("'%1' is no name; letters, digits and . _ - / are, up to 120 "
                                     "with a letter or _ in front, for example press.speed")
                     .arg(quotable(m_tag.name)));
    }
}

void TagRow::readPlace()
{
    const QString name = text(TagColumn::Register);
    const RegisterInfo *const reg = m_reading.registers.find(name);
    const QStringList names = m_reading.registers.names();
    m_hasRegister = reg != nullptr;
    if (reg == nullptr) {
        complain(
            TagColumn::Register,
            (name.isEmpty()
                 ? QString::fromLatin1("no register")
                 : QString::fromLatin1("the driver has no register '%1'").arg(quotable(name))) +
                QString::fromLatin1(", it has ") + names.join(QLatin1Char(' ')) +
                nearMissHint(name, names));
    } else {
        m_tag.item.reg = *reg;
    }
    const QString address = text(TagColumn::Address);
    const auto start = reg == nullptr ? std::nullopt : readAddress(*reg, address);
    m_hasAddress = start && *start >= reg->lowest && *start <= reg->highest;
    if (m_hasAddress) {
        m_tag.item.start = *start;
    } else if (reg != nullptr || address.isEmpty()) {
        const QString what = address.isEmpty()
                                 ? QString::fromLatin1("no address")
                                 : QString::fromLatin1("'%1' is no address").arg(quotable(address));
        complain(TagColumn::Address,
                 reg == nullptr ? what + QLatin1String("; for example 100")
                                : what + QString::fromLatin1(" of %1, which is %2, for example %3")
                                             .arg(reg->name, addressHint(*reg), reg->lowestText));
    }
    const QString station = text(TagColumn::Station);
    const auto number = wholeNumber(TagColumn::Station, 0, kHighestStation);
    m_tag.item.station = number.value_or(m_reading.station);
    if (!number && !station.isEmpty()) {
        complain(TagColumn::Station,
                 QString::fromLatin1("'%1' is no station, which is a number from 0 to %2, for "
                                     "example 1")
                     .arg(quotable(station))
                     .arg(kHighestStation));
    }
}

void TagRow::readType()
{
    const QString type = text(TagColumn::Type);
    if (type.isEmpty()) {
        return;
    }
    QString error;
    const auto parsed = parseValueType(type, error);
    m_hasType = parsed.has_value();
    if (!parsed) {
        complain(TagColumn::Type, error);
        return;
    }
    m_tag.type = *parsed;
    const QString misfit = m_hasRegister ? typeMisfit(m_tag.item.reg, *parsed) : QString();
    if (!misfit.isEmpty()) {
        m_hasType = false;
        complain(TagColumn::Type, misfit);
    }
}

// The driver is asked last, for it knows the least of what the user meant.
void TagRow::readCount()
{
    const QString count = text(TagColumn::Count);
    const auto number = wholeNumber(TagColumn::Count, 1, std::numeric_limits<int>::max());
    m_tag.count = number.value_or(1);
    if (!number && !count.isEmpty()) {
        complain(TagColumn::Count,
                 QString::fromLatin1("'%1' is no count of values, which is a number from 1, for "
                                     "example 10")
                     .arg(quotable(count)));
        return;
    }
    if (!m_hasAddress || !m_hasType) {
        return;
    }
    const RegisterInfo &reg = m_tag.item.reg;
    const int units = m_tag.type.unitsPerValue();
    const int room = reg.highest - m_tag.item.start + 1;
    if (qint64(units) * m_tag.count > room) {
        complain(
            number ? TagColumn::Count : TagColumn::Type,
            QString::fromLatin1("%1 of %2 do not fit: from %3:%4 there are %5 up to the end at "
                                "%6, which is room for %7")
                .arg(counted(m_tag.count, "value"), m_tag.type.text(), reg.name,
                     addressText(reg, m_tag.item.start),
                     counted(room, reg.isBit() ? "bit" : "word"), reg.highestText)
                .arg(room / units));
        return;
    }
    m_tag.item.count = units * m_tag.count;
}

void TagRow::readAccess()
{
    static const QStringList reads{QLatin1String("read"), QLatin1String("r"), QLatin1String("ro")};
    static const QStringList writes{QLatin1String("read-write"), QLatin1String("rw")};
    const QString access = text(TagColumn::Access).toLower();
    const bool onlyReads = m_hasRegister && m_tag.item.reg.access == RegisterAccess::Read;
    m_tag.access = reads.contains(access) || (access.isEmpty() && onlyReads) ? TagAccess::Read
                                                                             : TagAccess::ReadWrite;
    if (!access.isEmpty() && !reads.contains(access) && !writes.contains(access)) {
        complain(TagColumn::Access,
                 QString::fromLatin1("'%1' is no access; expected read or read-write, or r or rw")
                     .arg(quotable(access)));
        return;
    }
    QString error;
    if (!m_hasAddress || !m_hasType) {
        return;
    }
    if (onlyReads && m_tag.access == TagAccess::ReadWrite) {
        complain(
            TagColumn::Access,
            QString::fromLatin1("%1 can only be read; expected read").arg(m_tag.item.reg.name));
    } else if (!m_reading.check(m_tag.item, m_tag.access, error)) {
        complain(TagColumn::Address, error);
    }
}

} // namespace cnet
