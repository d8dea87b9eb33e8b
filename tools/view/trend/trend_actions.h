#pragma once

#include <QAction>
#include <QKeySequence>
#include <QList>
#include <QObject>

class QMenu;

namespace cnet::view {

class WrapBar;

/** What one can do with the picture, for the bar of tools, the menu and the keys. */
class TrendActions : public QObject
{
    Q_OBJECT

public:
    /** @param keys where keys stand for them; it and its children */
    explicit TrendActions(QWidget *keys);

    QAction *follow; ///< checkable
    QAction *pause;  ///< checkable
    QAction *back;
    QAction *zoomIn;
    QAction *zoomOut;
    QAction *all;
    QAction *cursorA;
    QAction *cursorB;
    QAction *noCursors;
    QAction *note;
    QAction *addPane;
    QAction *removePane;
    QAction *autoLeft;  ///< checkable
    QAction *autoRight; ///< checkable
    QAction *record;    ///< checkable
    QAction *saveCsv;
    QAction *savePicture;

    /** Those that are used often, each with its text. */
    void fill(WrapBar &bar) const;
    /** All. */
    void fill(QMenu *menu) const;

private:
    /** What an action is called, and how it is reached. */
    struct Words
    {
        QString text;
        QString hint;
        QList<QKeySequence> keys;
    };
    enum class Switch { No, Yes };

    QAction *make(const Words &words, Switch isSwitch = Switch::No);

    QWidget *m_keys;
};

} // namespace cnet::view
