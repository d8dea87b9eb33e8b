#include "view/trend/trend_actions.h"

#include "view/look/wrap_bar.h"

#include <QMenu>

namespace cnet::view {

TrendActions::TrendActions(QWidget *keys)
    : QObject(keys)
    , m_keys(keys)
{
    follow = make({tr("Follow"), tr("Go along with the time"), {Qt::Key_End}}, Switch::Yes);
    pause = make(
        {tr("Pause"), tr("Keep the picture; samples are collected all the same"), {Qt::Key_Space}},
        Switch::Yes);
    back = make({tr("Back"), tr("What was seen before"), {Qt::Key_Backspace}});
    zoomIn = make({tr("Zoom in"), tr("Half the time"), {Qt::Key_Plus, Qt::Key_Equal}});
    zoomOut = make({tr("Zoom out"), tr("Twice the time"), {Qt::Key_Minus}});
    all = make({tr("All"), tr("All that was collected"), {Qt::Key_Home}});
    cursorA = make({tr("Cursor A"), tr("Show cursor A; Left and Right move it"), {Qt::Key_1}});
    cursorB = make({tr("Cursor B"), tr("Show cursor B; Left and Right move it"), {Qt::Key_2}});
    noCursors = make({tr("No cursors"), tr("Hide both cursors"), {Qt::Key_0}});
    note = make({tr("Note"), tr("Put a note at a time"), {Qt::Key_M}});
    addPane = make({tr("Add pane"), tr("One more pane, with scales of its own"), {Qt::Key_P}});
    removePane = make({tr("Remove pane"),
                       tr("Its traces go to the pane above"),
                       {QKeySequence(QLatin1String("Shift+P"))}});
    autoLeft = make({tr("Automatic left scale"), tr("The scale fits to what is seen"), {Qt::Key_L}},
                    Switch::Yes);
    autoRight =
        make({tr("Automatic right scale"), tr("The scale fits to what is seen"), {Qt::Key_R}},
             Switch::Yes);
    record = make({tr("Record..."),
                   tr("Write samples to a file until this is switched off"),
                   {QKeySequence(QLatin1String("Ctrl+R"))}},
                  Switch::Yes);
    saveCsv = make({tr("Save CSV..."),
                    tr("What is between the cursors, or what is seen"),
                    {QKeySequence(QLatin1String("Ctrl+E"))}});
    savePicture = make({tr("Save picture..."),
                        tr("As PNG or SVG"),
                        {QKeySequence(QLatin1String("Ctrl+Shift+E"))}});
}

QAction *TrendActions::make(const Words &words, Switch isSwitch)
{
    auto *action = new QAction(words.text, this);
    action->setCheckable(isSwitch == Switch::Yes);
    action->setShortcuts(words.keys);
    action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    action->setToolTip(QLatin1String("%1 (%2)").arg(
        words.hint, words.keys.first().toString(QKeySequence::NativeText)));
    m_keys->addAction(action);
    return action;
}

void TrendActions::fill(WrapBar &bar) const
{
    bar.add({follow, pause, back, zoomIn, zoomOut, all});
    bar.addSeparator();
    bar.add({cursorA, cursorB, noCursors, note});
    bar.addSeparator();
    bar.add({addPane, removePane});
    bar.addSeparator();
    bar.add({saveCsv, savePicture, record});
}

void TrendActions::fill(QMenu *menu) const
{
    menu->addActions({follow, pause, back, zoomIn, zoomOut, all});
    menu->addSeparator();
    menu->addActions({cursorA, cursorB, noCursors, note});
    menu->addSeparator();
    menu->addActions({autoLeft, autoRight, addPane, removePane});
    menu->addSeparator();
    menu->addActions({saveCsv, savePicture, record});
}

} // namespace cnet::view
