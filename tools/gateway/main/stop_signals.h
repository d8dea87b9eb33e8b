#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <memory>

namespace cnet::gateway {

/** Turns SIGINT, SIGTERM and SIGHUP into events. To be made before any thread is. */
class StopSignals : public QObject
{
    Q_OBJECT

public:
    StopSignals();
    ~StopSignals() override;

Q_SIGNALS:
    void caught();      ///< SIGINT or SIGTERM
    void reloadAsked(); ///< SIGHUP

private:
    int m_descriptor;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace cnet::gateway
