#include "view/stations/numbers/table_text.h"

#include <QAbstractItemModel>
#include <QStringList>

namespace cnet::view {

namespace {

/** A tab or a line's end within a field would begin another one. */
QString fieldOf(const QVariant &value)
{
    return value.toString().simplified();
}

} // namespace

QString tableText(const QAbstractItemModel &model)
{
    QStringList names;
    for (int column = 0; column < model.columnCount(); ++column) {
        names << fieldOf(model.headerData(column, Qt::Horizontal));
    }
    QString text = names.join(QLatin1Char('\t')) + QLatin1Char('\n');
    for (int row = 0; row < model.rowCount(); ++row) {
        QStringList fields;
        for (int column = 0; column < model.columnCount(); ++column) {
            fields << fieldOf(model.index(row, column).data());
        }
        text += fields.join(QLatin1Char('\t')) + QLatin1Char('\n');
    }
    return text;
}

} // namespace cnet::view
