#include "view/values/table/value_delegate.h"

#include "view/values/table/value_editor.h"

#include "host/tag/value_format.h"

#include <QKeyEvent>

namespace cnet::view {

namespace {

// Of an editor: that its text is wanted, and that it had its first one.
constexpr const char *kEntered = "cnetEntered";
constexpr const char *kFilled = "cnetFilled";

QString textOf(const QWidget *editor)
{
    if (const auto *const field = qobject_cast<const ValueEditor *>(editor); field != nullptr) {
        return field->text();
    }
    const auto *const choice = qobject_cast<const ChoiceEditor *>(editor);
    return choice != nullptr ? choice->currentText() : QString();
}

bool isAcceptable(const QWidget *editor)
{
    if (const auto *const field = qobject_cast<const ValueEditor *>(editor); field != nullptr) {
        return field->reason().isEmpty();
    }
    const auto *const choice = qobject_cast<const ChoiceEditor *>(editor);
    return choice != nullptr && choice->currentIndex() >= 0;
}

QColor mixed(const QColor &over, const QColor &under, double part)
{
    const auto mix = [part](int first, int second) {
        return static_cast<int>(first * part + second * (1 - part));
    };
    return {mix(over.red(), under.red()), mix(over.green(), under.green()),
            mix(over.blue(), under.blue())};
}

} // namespace

QStringList choicesOf(const Tag &tag)
{
    const bool isTruth = tag.type.kind == ValueKind::Bool || tag.type.kind == ValueKind::Bit;
    if (isTruth) {
        return {typedText(tag, {false, ValueFault::None}),
                typedText(tag, {true, ValueFault::None})};
    }
    if (tag.type.kind == ValueKind::Raw && tag.item.reg.isBit()) {
        return {QLatin1String("0"), QLatin1String("1")};
    }
    return tag.type.kind == ValueKind::Enum ? QStringList(tag.texts.values()) : QStringList();
}

ValueDelegate::ValueDelegate(ValuesModel &model, QObject *parent)
    : QStyledItemDelegate(parent)
    , m_model(model)
{}

QWidget *ValueDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem & /*option*/,
                                     const QModelIndex &index) const
{
    const int row = index.data(ValuesModel::RowRole).toInt();
    if (!index.isValid() || row >= m_model.rowCount()) {
        return nullptr;
    }
    const Tag tag = m_model.tagOf(row);
    const QStringList choices = choicesOf(tag);
    QWidget *editor = nullptr;
    if (!choices.isEmpty()) {
        auto *const choice = new ChoiceEditor(parent);
        choice->addItems(choices);
        editor = choice;
    } else {
        const ValueWriter &writer = m_model.writer();
        editor = new ValueEditor(
            [&writer, tag](const QString &text, QString &reason) {
                return writer.planned(tag, text, reason).has_value();
            },
            parent);
    }
    editor->setAccessibleName(tr("New value of %1").arg(m_model.row(row).name));
    return editor;
}

// What the PLC says meanwhile must not take the place of what somebody types.
void ValueDelegate::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    const int row = index.data(ValuesModel::RowRole).toInt();
    if (editor->property(kFilled).toBool() || row >= m_model.rowCount()) {
        return;
    }
    editor->setProperty(kFilled, true);
    const bool isKnown = m_model.row(row).now.value.isKnown();
    const QString text = isKnown ? index.data(Qt::EditRole).toString() : QString();
    if (auto *const field = qobject_cast<ValueEditor *>(editor); field != nullptr) {
        field->setText(text);
        field->selectAll();
    } else if (auto *const choice = qobject_cast<ChoiceEditor *>(editor); choice != nullptr) {
        choice->setCurrentIndex(choice->findText(text));
    }
}

void ValueDelegate::setModelData(QWidget *editor, QAbstractItemModel *model,
                                 const QModelIndex &index) const
{
    if (editor->property(kEntered).toBool() && isAcceptable(editor)) {
        editor->setProperty(kEntered, false);
        model->setData(index, textOf(editor), Qt::EditRole);
    }
}

void ValueDelegate::updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                                         const QModelIndex & /*index*/) const
{
    const int least = editor->fontMetrics().averageCharWidth() * 12;
    QRect place = option.rect;
    place.setWidth(qMax(place.width(), least));
    editor->setGeometry(place);
}

bool ValueDelegate::eventFilter(QObject *object, QEvent *event)
{
    auto *const editor = qobject_cast<QWidget *>(object);
    const bool isKey = event->type() == QEvent::KeyPress;
    if (editor != nullptr && isKey && handleKey(editor, static_cast<QKeyEvent *>(event)->key())) {
        return true;
    }
    return QStyledItemDelegate::eventFilter(object, event);
}

bool ValueDelegate::handleKey(QWidget *editor, int key)
{
    switch (key) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        enter(editor);
        return true;
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
        Q_EMIT closeEditor(editor, RevertModelCache);
        return true;
    default:
        return false;
    }
}

void ValueDelegate::enter(QWidget *editor)
{
    if (isAcceptable(editor)) {
        editor->setProperty(kEntered, true);
        Q_EMIT commitData(editor);
        Q_EMIT closeEditor(editor, NoHint);
    }
}

void ValueDelegate::initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const
{
    QStyledItemDelegate::initStyleOption(option, index);
    if (index.column() != static_cast<int>(ValueColumn::Value)) {
        return;
    }
    const double fresh = index.data(ValuesModel::FreshRole).toDouble();
    if (fresh > 0) {
        const bool isAlternate = option->features.testFlag(QStyleOptionViewItem::Alternate);
        const QColor under =
            option->palette.color(isAlternate ? QPalette::AlternateBase : QPalette::Base);
        option->backgroundBrush = mixed(washColour(Tone::Waiting, option->palette), under, fresh);
    }
}

} // namespace cnet::view
