#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <memory>

namespace cnet::panel {

/** Turns SIGUSR1, by which a user asks for a report, into an event. */
class ReportSignal : public QObject
{
    Q_OBJECT

public:
    /** One at a time; with its end the signal ends the program again. */
    explicit ReportSignal(QObject *parent = nullptr);
    ~ReportSignal() override;

Q_SIGNALS:
    void caught();

private:
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace cnet::panel
