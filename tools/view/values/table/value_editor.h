#pragma once

#include <QComboBox>
#include <QLineEdit>
#include <QPointer>

#include <functional>

class QLabel;

namespace cnet::view {

/** A field for a value that says under it, while one types, what is wrong with the text. */
class ValueEditor : public QLineEdit
{
    Q_OBJECT

public:
    /** @return true: the text may be written; else `reason` says why not */
    using Check = std::function<bool(const QString &text, QString &reason)>;

    /** @param parent whose area the reason may use, too */
    ValueEditor(Check check, QWidget *parent);
    ~ValueEditor() override;

    /** Why the text may not be written; empty where it may. */
    const QString &reason() const { return m_reason; }

protected:
    void moveEvent(QMoveEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void review();
    void placeReason();

    Check m_check;
    QString m_reason;
    QPointer<QLabel> m_label; ///< beside this, not in it: it is larger than a cell
};

/** A choice of a few values, which a turn of the wheel does not change. */
class ChoiceEditor : public QComboBox
{
    Q_OBJECT

public:
    explicit ChoiceEditor(QWidget *parent = nullptr);

protected:
    void wheelEvent(QWheelEvent *event) override;
};

} // namespace cnet::view
