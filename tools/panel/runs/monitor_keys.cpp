#include "panel/runs/monitor_keys.h"

#include <unistd.h>

#include <array>

namespace cnet::panel {

MonitorKeys::MonitorKeys(const Driver &driver, Session &session, Messages &messages, int station)
    : m_driver(driver)
    , m_session(session)
    , m_messages(messages)
    , m_station(station)
{}

bool MonitorKeys::listenTo(int fileDescriptor)
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

void MonitorKeys::readKeys(int fileDescriptor)
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

void MonitorKeys::type(const QByteArray &bytes)
{
    for (const char byte : bytes) {
        handleByte(byte);
    }
    if (m_asking) {
        handleKey(m_editor.endOfInput());
    }
    Q_EMIT bottomLineChanged();
}

void MonitorKeys::handleByte(char byte)
{
    if (m_asking) {
        handleKey(m_editor.feed(byte));
        return;
    }
    const MoveKey key = m_keys.feed(byte);
    if (key != MoveKey::None) {
        Q_EMIT moved(key);
    } else if (byte == 'w' || byte == 'W') {
        m_asking = true;
        m_editor.clear();
    }
}

void MonitorKeys::handleKey(LineEditor::Event event)
{
    if (event == LineEditor::Event::Entered) {
        enter();
    } else if (event == LineEditor::Event::Cancelled) {
        m_asking = false;
    }
}

// Checked here, since a session takes every request: what is refused never reaches the line.
void MonitorKeys::enter()
{
    const QString text = m_editor.text().trimmed();
    if (text.isEmpty()) {
        m_asking = false;
        return;
    }
    QString error;
    const auto assignment = parseAssignment(text, m_station, m_driver.registers(), error);
    if (!assignment || !m_driver.check(assignment->item, Access::Write, error)) {
        m_messages.say(error);
        return;
    }
    m_asking = false;
    WriteJob *const job = m_session.write({*assignment});
    connect(job, &Job::finished, this, [this, job] {
        m_messages.say(job->results().first().text());
        job->deleteLater();
    });
}

QString MonitorKeys::bottomLine() const
{
    return m_asking ? QString::fromLatin1("write ITEM=VALUE (Esc leaves): %1_").arg(m_editor.text())
                    : QLatin1String("w: write a value   arrows: scroll   Ctrl-C: end");
}

} // namespace cnet::panel
