#include "gateway/change/batch_codec.h"

#include <utility>

namespace cnet::gateway {

namespace {

constexpr char kForm = 2;

enum class Kind : quint8 { None, Truth, Whole, LargeWhole, Fraction, Text };

struct ScalarWriter
{
    PackedOutput &out;

    void operator()(std::monostate /*nothing*/) const {}
    void operator()(bool truth) const { out.addNumber(truth ? 1 : 0); }
    void operator()(qint64 whole) const { out.addSigned(whole); }
    void operator()(quint64 large) const { out.addNumber(large); }
    void operator()(double fraction) const { out.addReal(fraction); }
    void operator()(const QString &text) const { out.addText(text); }
};

Scalar readScalar(PackedInput &in)
{
    switch (static_cast<Kind>(in.number())) {
    case Kind::None:
        return {};
    case Kind::Truth:
        return in.number() != 0;
    case Kind::Whole:
        return in.signedNumber();
    case Kind::LargeWhole:
        return in.number();
    case Kind::Fraction:
        return in.real();
    case Kind::Text:
        return in.text();
    }
    in.spoil();
    return {};
}

std::optional<Quality> qualityOf(const QString &text)
{
    for (const Quality quality :
         {Quality::NeverRead, Quality::Good, Quality::Waiting, Quality::Implausible, Quality::Stale,
          Quality::Refused, Quality::NoAnswer, Quality::LineDown}) {
        if (text == qualityText(quality)) {
            return quality;
        }
    }
    return std::nullopt;
}

QByteArray bytesOf(const ChangeSource &source)
{
    PackedOutput out;
    out.addText(source.line);
    out.addSigned(source.station);
    out.addText(source.tag);
    out.addText(source.unit);
    out.addText(source.type.text());
    out.addReal(source.scale);
    out.addReal(source.offset);
    return out.bytes();
}

/** @return nothing where it is damaged */
std::shared_ptr<const ChangeSource> sourceOf(const QByteArray &bytes)
{
    PackedInput in(bytes);
    auto source = std::make_shared<ChangeSource>();
    source->line = in.text();
    source->station = static_cast<int>(in.signedNumber());
    source->tag = in.text();
    source->unit = in.text();
    QString error;
    const auto type = parseValueType(in.text(), error);
    source->scale = in.real();
    source->offset = in.real();
    source->type = type.value_or(ValueType());
    return in.isGood() && in.isAtEnd() && type ? source : nullptr;
}

} // namespace

void BatchWriter::add(const Change &change)
{
    m_changes.addNumber(numberOf(change.source));
    m_changes.addNumber(numberOf(change.quality, change.cause));
    // A clock that was never set may be as far off as it likes.
    m_changes.addSigned(
        static_cast<qint64>(static_cast<quint64>(change.atMs) - static_cast<quint64>(m_atMs)));
    m_changes.addNumber(change.value.index());
    std::visit(ScalarWriter{m_changes}, change.value);
    m_atMs = change.atMs;
    ++m_count;
}

quint64 BatchWriter::numberOf(const std::shared_ptr<const ChangeSource> &source)
{
    Known &known = m_known[source.get()];
    if (!known.source) {
        known.source = source;
        known.bytes = bytesOf(*source);
    }
    if (known.batch != m_batch) {
        known.batch = m_batch;
        known.number = m_sourceCount++;
        m_sources.addBytes(known.bytes);
    }
    return static_cast<quint64>(known.number);
}

quint64 BatchWriter::numberOf(Quality quality, const QString &cause)
{
    const auto key = std::make_pair(static_cast<int>(quality), cause);
    const auto known = m_stateNumbers.constFind(key);
    if (known != m_stateNumbers.cend()) {
        return static_cast<quint64>(*known);
    }
    const int number = static_cast<int>(m_stateNumbers.size());
    m_stateNumbers.insert(key, number);
    m_states.addText(qualityText(quality));
    m_states.addText(cause);
    return static_cast<quint64>(number);
}

QByteArray BatchWriter::finish()
{
    PackedOutput out;
    out.reserve(bytes() + 32);
    out.append(QByteArray(1, kForm));
    out.addNumber(static_cast<quint64>(m_sourceCount));
    out.append(m_sources.bytes());
    out.addNumber(static_cast<quint64>(m_stateNumbers.size()));
    out.append(m_states.bytes());
    out.addNumber(static_cast<quint64>(m_count));
    out.append(m_changes.bytes());
    if (m_known.size() > kMostKnownSources) {
        m_known.clear();
    }
    m_stateNumbers.clear();
    m_sources.clear();
    m_states.clear();
    m_changes.clear();
    ++m_batch;
    m_sourceCount = 0;
    m_count = 0;
    m_atMs = 0;
    return out.bytes();
}

BatchReader::Sources BatchReader::readSources(PackedInput &in)
{
    if (m_known.size() > kMostKnownSources) {
        m_known.clear();
    }
    const int count = in.count();
    Sources sources;
    sources.reserve(count);
    for (int left = count; left > 0 && in.isGood(); --left) {
        const QByteArray bytes = in.bytes();
        auto known = m_known.constFind(bytes);
        if (known == m_known.cend()) {
            const auto source = sourceOf(bytes);
            if (!source) {
                in.spoil();
                return sources;
            }
            // A copy: the batch's own bytes do not stay.
            known = m_known.insert(QByteArray(bytes.constData(), static_cast<int>(bytes.size())),
                                   source);
        }
        sources.append(*known);
    }
    return sources;
}

BatchReader::States BatchReader::readStates(PackedInput &in)
{
    States states;
    for (int left = in.count(); left > 0 && in.isGood(); --left) {
        const auto known = qualityOf(in.text());
        const QString cause = in.text();
        if (!known) {
            in.spoil();
            return states;
        }
        states.append({*known, cause});
    }
    return states;
}

std::optional<QVector<Change>> BatchReader::read(const QByteArray &bytes)
{
    if (!bytes.startsWith(kForm)) {
        return std::nullopt;
    }
    PackedInput in(bytes);
    in.number();
    const Sources sources = readSources(in);
    const States states = readStates(in);
    QVector<Change> changes(in.count());
    qint64 atMs = 0;
    for (Change &change : changes) {
        const quint64 source = in.number();
        const quint64 state = in.number();
        const auto step = static_cast<quint64>(in.signedNumber());
        atMs = static_cast<qint64>(static_cast<quint64>(atMs) + step); // damage may overflow
        change.value = readScalar(in);
        if (!in.isGood() || source >= static_cast<quint64>(sources.size()) ||
            state >= static_cast<quint64>(states.size())) {
            return std::nullopt;
        }
        change.source = sources.at(static_cast<int>(source));
        change.quality = states.at(static_cast<int>(state)).first;
        change.cause = states.at(static_cast<int>(state)).second;
        change.atMs = atMs;
    }
    if (!in.isGood() || !in.isAtEnd()) {
        return std::nullopt;
    }
    return changes;
}

std::optional<QVector<Change>> readBatch(const QByteArray &bytes)
{
    return BatchReader().read(bytes);
}

} // namespace cnet::gateway
