#include "host/address/assignment.h"

#include "host/address/value_text.h"

#include <QStringList>

namespace cnet {

namespace {

const int kShownValues = 8;

QString assignmentError(const QString &text, const QString &what)
{
    return QString::fromLatin1("'%1': %2").arg(quotable(text), what);
}

bool readValues(const QString &list, const RegisterInfo &reg, QVector<quint16> &values,
                QString &what)
{
    for (const QString &field : list.split(QLatin1Char(','))) {
        const auto value = parseValue(field, reg.isBit());
        if (!value) {
            what = QString::fromLatin1("'%1' is no value of %2, which is %3")
                       .arg(quotable(field), reg.name, valueHint(reg.isBit()));
            return false;
        }
        values.append(*value);
    }
    return true;
}

} // namespace

QString Assignment::text() const
{
    QStringList numbers;
    for (const quint16 value : values.mid(0, kShownValues)) {
        numbers.append(QString::number(value));
    }
    if (values.size() > kShownValues) {
        numbers.append(QLatin1String("..."));
    }
    return QString::fromLatin1("%1=%2").arg(item.text(), numbers.join(QLatin1Char(',')));
}

std::optional<Assignment> parseAssignment(const QString &text, int defaultStation,
                                          const RegisterCatalog &registers, QString &error)
{
    const int equals = static_cast<int>(text.indexOf(QLatin1Char('=')));
    if (equals < 1) {
        error = assignmentError(text, QLatin1String("expected ITEM=VALUE[,VALUE...], "
                                                    "for example D_W:100=1,2,3"));
        return std::nullopt;
    }
    const QString place = text.left(equals);
    const auto item = parseItem(place, defaultStation, registers, error);
    if (!item) {
        return std::nullopt;
    }
    Assignment assignment{*item, {}};
    QString what;
    if (!readValues(text.mid(equals + 1), item->reg, assignment.values, what)) {
        error = assignmentError(text, what);
        return std::nullopt;
    }
    const int given = static_cast<int>(assignment.values.size());
    if (!place.contains(QLatin1Char('*'))) {
        assignment.item.count = given;
    } else if (given == 1) {
        assignment.values.fill(assignment.values.first(), item->count);
    } else if (given != item->count) {
        error = assignmentError(text, wrongCountText(item->count, given));
        return std::nullopt;
    }
    return assignment;
}

} // namespace cnet
