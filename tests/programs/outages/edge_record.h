#pragma once

#include "outages/told.h"

#include "sparkplug/checker/packet.h"

#include <QHash>

/**
 * What hosts of Sparkplug were told by edge node "plant/gate": good values only. Of others they
 * hear with no value, or by the death of the device.
 */
class EdgeRecord
{
public:
    /** Any message of a broker, in order. @return false when it is not of the node */
    bool take(const spcheck::Message &message);

    const QVector<Told> &all() const { return m_all; }

    /** What a ledger took, as far as hosts are told value by value, as they are told. */
    static QVector<Told> goodOnes(const QVector<Told> &taken);

private:
    QHash<quint64, QByteArray> m_names; ///< of aliases
    int m_births = 0;
    QVector<Told> m_all;
};
