#pragma once

#include "host/session.h"
#include "host/tag/tag_set.h"
#include "panel/system/messages.h"
#include "panel/terminal/key_reader.h"
#include "panel/terminal/line_editor.h"
#include "panel/terminal/terminal.h"
#include "panel/views/view_state.h"

#include <QObject>
#include <QSocketNotifier>

#include <memory>

namespace cnet::panel {

/**
 * The keys of a running monitor.
 *
 * "w" asks for ITEM=VALUE, or NAME=VALUE where there are tags, on the bottom line, Enter writes,
 * Esc leaves; what is wrong with a line is said, and the line stays to be corrected. "/" asks for a
 * filter, which holds while it is typed; Enter keeps it, Esc takes it away, then and later. "1" to
 * "4" choose a view, "v" and Tab the next one; "m" shows extremes and a curve for each value; "R"
 * begins to count anew; "r" has the tags read again, where there are any. The arrow and page keys
 * move through the list.
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

    /** What names stand for in what is written. */
    void setTags(const TagSet &tags) { m_tags = tags; }

    /** Takes what the user typed. */
    void type(const QByteArray &bytes);

    /** For the bottom of the screen: the keys there are, or the line that is being typed. */
    QString bottomLine() const;

    /** A line is being typed: of a long one its end is to be seen. */
    bool isTyping() const { return m_typing != Typing::Nothing; }

    /** What the user wants to see. */
    const ViewState &viewState() const { return m_view; }

Q_SIGNALS:
    /** The user typed something: the bottom line and the view may be others. */
    void typed();
    void moved(cnet::panel::MoveKey key);
    /** The tags are to be read again. */
    void reloadAsked();

private:
    /** What the line at the bottom is for. */
    enum class Typing { Nothing, Write, Filter };

    void readKeys(int fileDescriptor);
    void handleByte(char byte);
    void handlePlainKey(char byte);
    void handleEndOfInput();
    void handleLineKey(LineEditor::Event event);
    void begin(Typing typing);
    void enter();

    const Driver &m_driver;
    Session &m_session;
    Messages &m_messages;
    int m_station;
    TagSet m_tags;
    LineEditor m_editor;
    KeyReader m_keys;
    Typing m_typing = Typing::Nothing;
    ViewState m_view;
    std::unique_ptr<RawTerminal> m_terminal;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace cnet::panel
