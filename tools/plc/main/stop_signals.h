#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <memory>

namespace plc {

/** Ends the application's event loop on SIGINT, SIGTERM and SIGHUP. One object per program. */
class StopSignals : public QObject
{
    Q_OBJECT

public:
    explicit StopSignals(QObject *parent = nullptr);
    ~StopSignals() override;

    /** Whether one of them has arrived: output need not wait for its reader any longer. */
    static bool isCaught();

private:
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace plc
