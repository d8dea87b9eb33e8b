#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <memory>

namespace plc {

/** Ends the event loop of the application on SIGINT, SIGTERM and SIGHUP. One object a program. */
class StopSignals : public QObject
{
    Q_OBJECT

public:
    explicit StopSignals(QObject *parent = nullptr);
    ~StopSignals() override;

    /** One of them has come; what waits for a reader of the trace need not wait any longer. */
    static bool isCaught();

private:
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace plc
