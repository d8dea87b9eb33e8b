#include "view/recipes/recipe_delegate.h"

#include "view/look/colours.h"

#include "host/address/value_text.h"

#include <QLineEdit>
#include <QValidator>

namespace cnet::view {

namespace {

/** Takes every letter, so that people see what is wrong with them, and ends with values only. */
class ValueValidator : public QValidator
{
public:
    using QValidator::QValidator;

    State validate(QString &text, int & /*position*/) const override
    {
        return parseValue(text, false) ? Acceptable : Intermediate;
    }
};

} // namespace

QWidget *RecipeDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem & /*option*/,
                                      const QModelIndex &index) const
{
    auto *const field = new QLineEdit(parent);
    field->setFrame(false);
    field->setValidator(new ValueValidator(field));
    field->setAccessibleName(tr("Value of %1").arg(index.siblingAtColumn(0).data().toString()));
    const QPalette usual = parent->palette();
    connect(field, &QLineEdit::textChanged, this, [this, field, usual](const QString &text) {
        const bool isValue = parseValue(text, false).has_value();
        QPalette palette = usual;
        if (!isValue) {
            palette.setColor(QPalette::Base, washColour(Tone::Bad, usual));
        }
        field->setPalette(palette);
        const QString mistake =
            isValue ? QString()
                    : tr("'%1' is no value; expected %2.").arg(quotable(text), valueHint(false));
        field->setToolTip(mistake);
        field->setAccessibleDescription(mistake);
        Q_EMIT typed(mistake);
    });
    connect(field, &QObject::destroyed, this, [this] { Q_EMIT typed(QString()); });
    return field;
}

void RecipeDelegate::setModelData(QWidget *editor, QAbstractItemModel *model,
                                  const QModelIndex &index) const
{
    const auto *const field = qobject_cast<QLineEdit *>(editor);
    if (field != nullptr && field->hasAcceptableInput()) {
        model->setData(index, field->text(), Qt::EditRole);
    }
}

} // namespace cnet::view
