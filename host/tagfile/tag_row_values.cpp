// The fields of a row that say what its values mean.
#include "host/address/value_text.h"
#include "host/tagfile/tag_row.h"

#include <QSet>
#include <QStringList>

#include <algorithm>
#include <cmath>

namespace cnet {

namespace {

const qint64 kHighestEnum = 65535;

bool isPrintable(const QString &text)
{
    return std::all_of(text.cbegin(), text.cend(), [](QChar letter) {
        return letter.isPrint() || letter.isSurrogate() || letter == QLatin1Char('\n') ||
               letter == QLatin1Char('\r') || letter == QLatin1Char('\t');
    });
}

} // namespace

bool TagRow::isNumeric() const
{
    switch (m_tag.type.kind) {
    case ValueKind::Bool:
    case ValueKind::Bit:
    case ValueKind::String:
    case ValueKind::Enum:
        return false;
    case ValueKind::Raw:
        return !m_hasRegister || !m_tag.item.reg.isBit();
    default:
        return true;
    }
}

QString TagRow::typeTitle() const
{
    return m_tag.type.kind == ValueKind::Raw ? QLatin1String("bits") : m_tag.type.text();
}

std::optional<int> TagRow::wholeNumber(TagColumn column, int low, qint64 high) const
{
    const QString digits = text(column);
    const bool isNumber =
        !digits.isEmpty() && std::all_of(digits.cbegin(), digits.cend(), [](QChar letter) {
            return letter >= QLatin1Char('0') && letter <= QLatin1Char('9');
        });
    bool fits = isNumber;
    const qint64 number = isNumber ? digits.toLongLong(&fits) : 0;
    return fits && number >= low && number <= high ? std::optional<int>(static_cast<int>(number))
                                                   : std::nullopt;
}

std::optional<double> TagRow::number(TagColumn column, const char *example)
{
    const QString digits = text(column);
    if (digits.isEmpty()) {
        return std::nullopt;
    }
    bool isNumber = false;
    const double value = digits.toDouble(&isNumber);
    if (isNumber && std::isfinite(value)) {
        return value;
    }
    QString withPoint = digits;
    withPoint.replace(QLatin1Char(','), QLatin1Char('.')).toDouble(&isNumber);
    complain(column, QString::fromLatin1("'%1' is no number%2, for example %3")
                         .arg(quotable(digits),
                              QLatin1String(isNumber ? "; the decimal sign is a point" : ""),
                              isNumber ? withPoint : QLatin1String(example)));
    return std::nullopt;
}

void TagRow::readNumbers()
{
    const auto scale = number(TagColumn::Scale, "0.1");
    const auto offset = number(TagColumn::Offset, "-40");
    m_tag.deadband = number(TagColumn::Deadband, "0.5");
    m_tag.scale = scale.value_or(1);
    m_tag.offset = offset.value_or(0);
    if (m_tag.scale == 0) {
        complain(TagColumn::Scale,
                 QLatin1String("'0' makes every value the same, and none could be written; "
                               "expected another number, for example 0.1"));
    }
    if (m_tag.deadband && *m_tag.deadband < 0) {
        complain(TagColumn::Deadband, QString::fromLatin1("'%1' is less than 0, and no change is; "
                                                          "expected 0 or more, for example 0.5")
                                          .arg(quotable(text(TagColumn::Deadband))));
    }
    if (!m_hasType) {
        return;
    }
    const QString what = QString::fromLatin1("%1 has no %2; leave the field empty");
    const auto refuse = [&](TagColumn column, bool given) {
        if (given && !isNumeric()) {
            complain(column, what.arg(typeTitle(), tagColumnName(column)));
        }
    };
    refuse(TagColumn::Scale, m_tag.scale != 1 && m_tag.scale != 0);
    refuse(TagColumn::Offset, m_tag.offset != 0);
    refuse(TagColumn::Deadband, m_tag.deadband && *m_tag.deadband > 0);
    const bool isLong = m_tag.type.kind == ValueKind::U64 || m_tag.type.kind == ValueKind::I64;
    if (isLong && m_tag.isScaled()) {
        warn(TagColumn::Scale, QString::fromLatin1("%1 with a scale or an offset is exact up to "
                                                   "9007199254740992 only; without, it always is")
                                   .arg(m_tag.type.text()));
    }
}

void TagRow::readBounds()
{
    m_tag.min = number(TagColumn::Min, "-10");
    m_tag.max = number(TagColumn::Max, "12.5");
    for (const TagColumn column : {TagColumn::Min, TagColumn::Max}) {
        const bool given = column == TagColumn::Min ? m_tag.min.has_value() : m_tag.max.has_value();
        if (given && m_hasType && !isNumeric()) {
            complain(column, QString::fromLatin1("%1 has no %2; leave the field empty")
                                 .arg(typeTitle(), tagColumnName(column)));
        }
    }
    if (m_tag.min && m_tag.max && *m_tag.min > *m_tag.max) {
        complain(TagColumn::Min,
                 QString::fromLatin1("'%1' is above max, which is '%2', so no value could be good; "
                                     "expected min up to max, for example 0 and 100")
                     .arg(quotable(text(TagColumn::Min)), quotable(text(TagColumn::Max))));
    }
}

void TagRow::readTexts()
{
    const QString all = text(TagColumn::Texts);
    const bool isEnum = m_tag.type.kind == ValueKind::Enum;
    if (all.isEmpty()) {
        if (isEnum && field(TagColumn::Texts).trouble == CsvTrouble::None) {
            warn(TagColumn::Type, QLatin1String("enum without texts is no more than a number; give "
                                                "it texts, for example 0=stopped;1=running"));
        }
        return;
    }
    if (!isEnum && m_hasType) {
        complain(TagColumn::Texts,
                 QString::fromLatin1("only an enum has texts, and the type is %1; set the type to "
                                     "enum, or leave the field empty")
                     .arg(m_tag.type.text()));
        return;
    }
    const qint64 highest = m_hasRegister && m_tag.item.reg.isBit() ? 1 : kHighestEnum;
    QSet<QString> known;
    for (const QString &part : all.split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
        const int equals = static_cast<int>(part.indexOf(QLatin1Char('=')));
        bool isNumber = false;
        const qint64 key = part.left(equals).trimmed().toLongLong(&isNumber);
        const QString meaning = part.mid(equals + 1).trimmed();
        QString what;
        if (equals < 0 || !isNumber || meaning.isEmpty()) {
            what = QLatin1String("is no NUMBER=TEXT");
        } else if (key < 0 || key > highest) {
            what = QString::fromLatin1("has a number that is not from 0 to %1").arg(highest);
        } else if (m_tag.texts.contains(key)) {
            what = QLatin1String("has a number that has a text already");
        } else if (known.contains(meaning)) {
            what = QLatin1String("has a text that another number has, and it could be written as "
                                 "either");
        }
        if (!what.isEmpty()) {
            complain(TagColumn::Texts,
                     QString::fromLatin1("'%1' %2; expected NUMBER=TEXT, divided by semicolons, "
                                         "for example 0=stopped;1=running")
                         .arg(quotable(part.trimmed()), what));
            return;
        }
        m_tag.texts.insert(key, meaning);
        known.insert(meaning);
    }
}

void TagRow::readWords()
{
    m_tag.unit = text(TagColumn::Unit);
    m_tag.description = text(TagColumn::Description);
    m_tag.group = text(TagColumn::Group);
    for (const TagColumn column : {TagColumn::Unit, TagColumn::Description, TagColumn::Texts}) {
        if (!isPrintable(text(column))) {
            complain(column, QLatin1String("control characters, which no screen shows; remove "
                                           "them"));
        }
    }
    if (!m_tag.group.isEmpty() && !isTagName(m_tag.group)) {
        complain(TagColumn::Group,
                 QString::fromLatin1("'%1' is no group; letters, digits and . _ - / are, for "
                                     "example press/hydraulics")
                     .arg(quotable(m_tag.group)));
    }
}

} // namespace cnet
