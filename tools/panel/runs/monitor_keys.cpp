#include "panel/runs/monitor_keys.h"

#include "panel/options/planned_write.h"

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
    if (const auto keys = typedKeys(fileDescriptor)) {
        type(*keys);
    } else {
        // It would report for ever that the terminal is gone.
        m_notifier->setEnabled(false);
    }
}

void MonitorKeys::type(const QByteArray &bytes)
{
    for (const char byte : bytes) {
        handleByte(byte);
    }
    handleEndOfInput();
    Q_EMIT typed();
}

// Esc by itself is told from the keys that begin with it only by what was read at once.
void MonitorKeys::handleEndOfInput()
{
    if (isTyping()) {
        handleLineKey(m_editor.endOfInput());
    } else if (m_keys.endOfInput() == KeyReader::Rest::Escape) {
        m_view.filter.clear();
    }
}

void MonitorKeys::handleByte(char byte)
{
    if (isTyping()) {
        handleLineKey(m_editor.feed(byte));
        return;
    }
    const bool within = m_keys.isWithinSequence();
    const MoveKey key = m_keys.feed(byte);
    if (key != MoveKey::None) {
        Q_EMIT moved(key);
    } else if (!within) {
        handlePlainKey(byte);
    }
}

void MonitorKeys::handlePlainKey(char byte)
{
    switch (byte) {
    case 'w':
    case 'W':
        begin(Typing::Write);
        break;
    case '/':
        begin(Typing::Filter);
        break;
    case 'v':
    case '\t':
        m_view.view = static_cast<View>((static_cast<int>(m_view.view) + 1) % kViews);
        break;
    case 'm':
        m_view.trend = m_view.trend == Trend::Hidden ? Trend::Shown : Trend::Hidden;
        break;
    case 'r':
        if (!m_tags.isEmpty()) {
            Q_EMIT reloadAsked();
        }
        break;
    case 'R':
        m_session.resetStatistics();
        break;
    default:
        if (byte >= '1' && byte < '1' + kViews) {
            m_view.view = static_cast<View>(byte - '1');
        }
        break;
    }
}

void MonitorKeys::begin(Typing typing)
{
    m_typing = typing;
    m_editor.clear();
    m_view.filter = typing == Typing::Filter ? QString() : m_view.filter;
}

void MonitorKeys::handleLineKey(LineEditor::Event event)
{
    if (m_typing == Typing::Filter) {
        m_view.filter =
            event == LineEditor::Event::Cancelled ? QString() : m_editor.text().trimmed();
    }
    const bool entered = event == LineEditor::Event::Entered;
    if (entered && m_typing == Typing::Write) {
        enter();
    } else if (entered || event == LineEditor::Event::Cancelled) {
        m_typing = Typing::Nothing;
    }
}

// Checked here, since a session takes every request: what is refused never reaches the line.
void MonitorKeys::enter()
{
    const QString text = m_editor.text().trimmed();
    if (text.isEmpty()) {
        m_typing = Typing::Nothing;
        return;
    }
    QString error;
    const auto writes =
        planWrite(text, {m_driver, m_station, m_session.options().blockWords, m_tags}, error);
    if (!writes) {
        m_messages.say(error);
        return;
    }
    m_typing = Typing::Nothing;
    WriteJob *const job = m_session.write(assignmentsOf(*writes));
    connect(job, &Job::finished, this, [this, job, planned = *writes] {
        for (int i = 0; i < planned.size(); ++i) {
            m_messages.say(planned.at(i).resultText(job->results().at(i)));
        }
        job->deleteLater();
    });
}

// The most wanted ones first: a narrow terminal cuts the others.
QString MonitorKeys::bottomLine() const
{
    switch (m_typing) {
    case Typing::Write:
        return QString::fromLatin1("write %1=VALUE (Esc leaves): %2_")
            .arg(QLatin1String(m_tags.isEmpty() ? "ITEM" : "NAME"), m_editor.text());
    case Typing::Filter:
        return QString::fromLatin1("show only (Esc: all): %1_").arg(m_editor.text());
    case Typing::Nothing:
        break;
    }
    return QString::fromLatin1("w: write  /: filter  1-4, v: view  m: min, max  arrows: scroll  %1"
                               "R: count anew")
        .arg(QLatin1String(m_tags.isEmpty() ? "" : "r: reload  "));
}

} // namespace cnet::panel
