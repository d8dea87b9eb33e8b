#pragma once

#include "panel/terminal/line_editor.h"
#include "panel/system/messages.h"
#include "panel/terminal/raw_terminal.h"
#include "host/jobs/writer.h"

#include <QHash>
#include <QObject>
#include <QSocketNotifier>

#include <memory>

namespace cnet::panel {

/**
 * Writes that the user types while a monitor runs: "w" asks for ITEM=VALUE on the bottom line,
 * Enter writes, Esc leaves. What is wrong with a line is said, and the line stays to be corrected.
 */
class MonitorWrites : public QObject
{
    Q_OBJECT

public:
    /**
     * @param driver,exchange,registers,messages must outlive this object
     * @param station of items that name none
     * @param blockWords words of a block
     */
    MonitorWrites(DriverSession &driver, Exchange &exchange, const RegisterCatalog &registers,
                  Messages &messages, int station, int blockWords);

    /** Takes keys from a terminal until the end. @return false where it is none, or not ours */
    bool listenTo(int fileDescriptor);

    /** Takes what the user typed. */
    void type(const QByteArray &bytes);

    /** For the bottom of the screen: how to begin, or the line that is being typed. */
    QString bottomLine() const;

Q_SIGNALS:
    void bottomLineChanged();

private:
    void readKeys(int fileDescriptor);
    void handleKey(LineEditor::Event event);
    void enter();
    void report(int number, const QString &failure);

    DriverSession &m_driver;
    const RegisterCatalog &m_registers;
    Messages &m_messages;
    int m_station;
    Writer m_writer;
    LineEditor m_editor;
    bool m_asking = false;
    QHash<int, QString> m_names; ///< of the writes that are underway
    std::unique_ptr<RawTerminal> m_terminal;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace cnet::panel
