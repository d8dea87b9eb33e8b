#pragma once

#include "host/session.h"
#include "panel/system/messages.h"
#include "panel/terminal/key_reader.h"
#include "panel/terminal/line_editor.h"
#include "panel/terminal/raw_terminal.h"

#include <QObject>
#include <QSocketNotifier>

#include <memory>

namespace cnet::panel {

/**
 * The keys of a running monitor: "w" asks for ITEM=VALUE on the bottom line, Enter writes, Esc
 * leaves; errors are shown and the line stays to be corrected. The arrow and page
 * keys move through the items.
 */
class MonitorKeys : public QObject
{
    Q_OBJECT

public:
    /**
     * @param driver,session,messages must outlive this object
     * @param station of items that name none
     */
    MonitorKeys(const Driver &driver, Session &session, Messages &messages, int station);

    /** Takes keys from a terminal until the end. @return false if it is none, or not this program's
     */
    bool listenTo(int fileDescriptor);

    /** Takes what the user typed. */
    void type(const QByteArray &bytes);

    /** For the bottom of the screen: how to begin, or the line that is being typed. */
    QString bottomLine() const;

Q_SIGNALS:
    void bottomLineChanged();
    void moved(cnet::panel::MoveKey key);

private:
    void readKeys(int fileDescriptor);
    void handleByte(char byte);
    void handleKey(LineEditor::Event event);
    void enter();

    const Driver &m_driver;
    Session &m_session;
    Messages &m_messages;
    int m_station;
    LineEditor m_editor;
    KeyReader m_keys;
    bool m_asking = false;
    std::unique_ptr<RawTerminal> m_terminal;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace cnet::panel
