#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <memory>

namespace cnet::panel {

/** Turns SIGINT, SIGTERM and SIGHUP into an event, so that the program ends in order. */
class StopSignals : public QObject
{
    Q_OBJECT

public:
    /** Only one at a time. Without one the signals end the program. */
    explicit StopSignals(QObject *parent = nullptr);
    ~StopSignals() override;

    /** A signal came since the latest object was made; for code that blocks in a call. */
    static bool isCaught();

Q_SIGNALS:
    void caught();

private:
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace cnet::panel
