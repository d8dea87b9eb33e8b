#pragma once

#include "gateway/sparkplug/node_model.h"
#include "gateway/sparkplug/sparkplug_session.h"

#include <QMap>

#include <memory>

namespace cnet::gateway {

/** Tells hosts what becomes of devices: births, data and deaths, as long as the node is born. */
class DeviceTeller
{
public:
    /** @param model,session,clock must outlive this object */
    DeviceTeller(NodeModel &model, SparkplugSession &session, Clock &clock);

    /** @return how many metrics that were, 1 at least */
    int bear(int device);

    /** The changes of a batch, with whatever births and deaths they make. */
    void tell(const SinkBatch &batch);

    /** What is known by now and was told otherwise. @return how many metrics that were */
    int tellUntold(int device);

    /** Devices that are lost die soon, unless they come back or something of them comes. */
    void doomLost();

private:
    void tellPart(NodeModel::Part part, const SinkBatch &batch);
    void tellData(int device, const QVector<Metric> &metrics);
    void kill(int device);
    void doom(int device);
    void killLost();

    NodeModel &m_model;
    SparkplugSession &m_session;
    Clock &m_clock;
    std::unique_ptr<Alarm> m_grace;
    QMap<int, qint64> m_doomed; ///< devices, and until when
};

} // namespace cnet::gateway
