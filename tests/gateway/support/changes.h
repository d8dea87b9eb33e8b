#pragma once

#include "gateway/change/batch_codec.h"
#include "gateway/store/ledger.h"

#include <QStringList>

namespace cnet::gateway {

/** Where changes of a tag come from. */
inline std::shared_ptr<ChangeSource> sourceOf(const char *tag)
{
    auto source = std::make_shared<ChangeSource>();
    source->line = QLatin1String("press");
    source->tag = QLatin1String(tag);
    source->type.kind = ValueKind::U16;
    return source;
}

inline Change changeOf(const std::shared_ptr<const ChangeSource> &source, const Scalar &value,
                       qint64 atMs = 1000)
{
    Change change;
    change.source = source;
    change.value = value;
    change.quality = Quality::Good;
    change.atMs = atMs;
    return change;
}

/** "a=5" with the quality behind it where that is not good. */
inline QString textOf(const Change &change)
{
    const auto *whole = std::get_if<qint64>(&change.value);
    QString text = change.source->tag + QLatin1Char('=') +
                   (whole == nullptr ? QLatin1String("-") : QString::number(*whole));
    if (change.quality != Quality::Good) {
        text += QLatin1Char('(') + qualityText(change.quality) + QLatin1Char(')');
    }
    return text;
}

/** A batch of changes of one tag, with these values. */
inline LedgerBatch batchWith(const QVector<qint64> &values)
{
    const auto source = sourceOf("a");
    BatchWriter writer;
    for (const qint64 value : values) {
        writer.add(changeOf(source, value));
    }
    LedgerBatch batch;
    batch.values = writer.count();
    batch.body = writer.finish();
    return batch;
}

} // namespace cnet::gateway
