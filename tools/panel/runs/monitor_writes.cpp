#include "panel/runs/monitor_writes.h"

#include "host/driver/item_check.h"

#include <unistd.h>

#include <array>

namespace cnet::panel {

MonitorWrites::MonitorWrites(DriverSession &driver, Exchange &exchange,
                             const RegisterCatalog &registers, Messages &messages, int station,
                             int blockWords)
    : m_driver(driver)
    , m_registers(registers)
    , m_messages(messages)
    , m_station(station)
    , m_writer(driver, exchange, blockWords)
{
    connect(&m_writer, &Writer::settled, this, &MonitorWrites::report);
}

bool MonitorWrites::listenTo(int fileDescriptor)
{
    m_terminal = std::make_unique<RawTerminal>(fileDescriptor);
    if (!m_terminal->isActive()) {
        return false;
    }
    m_notifier = std::make_unique<QSocketNotifier>(fileDescriptor, QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this,
            [this, fileDescriptor] { readKeys(fileDescriptor); });
    return true;
}

void MonitorWrites::readKeys(int fileDescriptor)
{
    std::array<char, 256> keys{};
    const ssize_t count = read(fileDescriptor, keys.data(), keys.size());
    if (count > 0) {
        type(QByteArray(keys.data(), static_cast<int>(count)));
    } else {
        // The terminal is gone; it would report that for ever.
        m_notifier->setEnabled(false);
    }
}

void MonitorWrites::type(const QByteArray &bytes)
{
    for (const char byte : bytes) {
        if (m_asking) {
            handleKey(m_editor.feed(byte));
        } else if (byte == 'w' || byte == 'W') {
            m_asking = true;
            m_editor.clear();
        }
    }
    if (m_asking) {
        handleKey(m_editor.endOfInput());
    }
    Q_EMIT bottomLineChanged();
}

void MonitorWrites::handleKey(LineEditor::Event event)
{
    if (event == LineEditor::Event::Entered) {
        enter();
    } else if (event == LineEditor::Event::Cancelled) {
        m_asking = false;
    }
}

// Checked here, since the driver takes every request: what is refused never reaches the line.
void MonitorWrites::enter()
{
    const QString text = m_editor.text().trimmed();
    if (text.isEmpty()) {
        m_asking = false;
        return;
    }
    QString error;
    const auto assignment = parseAssignment(text, m_station, m_registers, error);
    if (!assignment || !checkItem(m_driver.functions(), assignment->item, Access::Write, error)) {
        m_messages.say(error);
        return;
    }
    m_asking = false;
    m_names.insert(m_writer.add(*assignment), assignment->text());
}

void MonitorWrites::report(int number, const QString &failure)
{
    const QString name = m_names.take(number);
    m_messages.say(failure.isEmpty()
                       ? QString::fromLatin1("%1: written").arg(name)
                       : QString::fromLatin1("%1: not written (%2)").arg(name, failure));
}

QString MonitorWrites::bottomLine() const
{
    return m_asking ? QString::fromLatin1("write ITEM=VALUE (Esc leaves): %1_").arg(m_editor.text())
                    : QLatin1String("w: write a value   Ctrl-C: end");
}

} // namespace cnet::panel
