#pragma once

#include "gateway/change/change.h"
#include "gateway/change/packed_bytes.h"

#include <QByteArray>
#include <QHash>

#include <optional>
#include <utility>

namespace cnet::gateway {

/**
 * Changes as the bytes of a batch. What a value belongs to and its quality stand in a batch once,
 * and qualities in words, so that a later program reads what an earlier one left.
 */
class BatchWriter
{
public:
    void add(const Change &change);

    int count() const { return m_count; }
    /** Bytes that finish() would give, roughly. */
    int bytes() const { return m_sources.size() + m_states.size() + m_changes.size(); }

    /** The bytes, and begins anew. */
    QByteArray finish();

private:
    struct Known
    {
        std::shared_ptr<const ChangeSource> source; ///< so that its address is no other's
        QByteArray bytes;
        int batch = 0; ///< that it stands in
        int number = 0;
    };

    quint64 numberOf(const std::shared_ptr<const ChangeSource> &source);
    quint64 numberOf(Quality quality, const QString &cause);

    QHash<const ChangeSource *, Known> m_known; ///< from batch to batch
    QHash<std::pair<int, QString>, int> m_stateNumbers;
    PackedOutput m_sources;
    PackedOutput m_states;
    PackedOutput m_changes;
    int m_batch = 1; ///< that is being written
    int m_sourceCount = 0;
    int m_count = 0;
    qint64 m_atMs = 0; ///< of the change before
};

/** Reads batches. What their values belong to is one object through all of them. */
class BatchReader
{
public:
    /** @return nothing where the bytes are damaged, or of a later program */
    std::optional<QVector<Change>> read(const QByteArray &bytes);

private:
    using Sources = QVector<std::shared_ptr<const ChangeSource>>;
    using States = QVector<std::pair<Quality, QString>>;

    Sources readSources(PackedInput &in);
    static States readStates(PackedInput &in);

    QHash<QByteArray, std::shared_ptr<const ChangeSource>> m_known; ///< by their bytes
};

/** Reads one batch by itself. */
std::optional<QVector<Change>> readBatch(const QByteArray &bytes);

} // namespace cnet::gateway
