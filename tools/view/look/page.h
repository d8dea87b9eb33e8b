#pragma once

#include <QJsonObject>
#include <QWidget>

namespace cnet::view {

/**
 * One page of the window: values, trend... A page never opens a dialog in the way of live values;
 * what went wrong it says in the window's bar.
 */
class Page : public QWidget
{
    Q_OBJECT

public:
    using QWidget::QWidget;

    /** For its tab, with a mnemonic: "&Values". */
    virtual QString title() const = 0;

    /** What a project keeps of the page; empty: nothing. */
    virtual QJsonObject saved() const { return {}; }

    /**
     * Takes over what saved() gave once.
     * @param state whatever a file held: what is not understood is left as it is
     */
    virtual void restore(const QJsonObject & /*state*/) {}

Q_SIGNALS:
    /** Something went wrong. @param text what, in a sentence @param advice what to do; may be empty
     */
    void troubled(const QString &text, const QString &advice);
    /** A word about what was done: "412 rows were written". */
    void told(const QString &text);
    /** What saved() gives is different now. */
    void changed();
};

} // namespace cnet::view
