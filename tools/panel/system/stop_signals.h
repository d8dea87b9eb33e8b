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
    /** One at a time; with its end the signals end the program again. */
    explicit StopSignals(QObject *parent = nullptr);
    ~StopSignals() override;

    /** One of them came during the life of the latest object; asked by what waits in a call. */
    static bool isCaught();

Q_SIGNALS:
    void caught();

private:
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace cnet::panel
