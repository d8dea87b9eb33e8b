#include "gateway/lines/gateway_line.h"

#include "gateway/lines/line_tags.h"

#include "host/tag/typed_item.h"

namespace cnet::gateway {

GatewayLine::GatewayLine(const LineConfig &config, std::unique_ptr<Link> link, Clock &clock,
                         TagReporter::Taker taker, StatusReporter::Taker status, const Say &say)
    : m_config(config)
    , m_link(std::move(link))
    , m_clock(clock)
    , m_taker([this, taker = std::move(taker)](const Change &change) {
        ++m_changes;
        taker(change);
    })
    , m_statusTaker(std::move(status))
    , m_say(say)
{}

QStringList GatewayLine::prepare()
{
    QString error;
    if (!m_driver.load(QString(), error)) {
        return {error};
    }
    QStringList mistakes;
    const TagSet tags = readTags(m_config, mistakes);
    if (!mistakes.isEmpty()) {
        return mistakes;
    }
    m_session = std::make_unique<Session>(m_driver, std::move(m_link), m_config.session, m_clock);
    connect(m_session.get(), &Session::noticed, this, [this](const QString &text) {
        m_say.warn(QString::fromLatin1("line %1: %2").arg(m_config.name, text));
    });
    m_tags = new TagMonitor(m_session->monitor(), tags);
    m_writer = std::make_unique<LineWriter>(m_config.writes, allowedValues(), *m_session, m_clock);
    return {};
}

TagSet GatewayLine::readTags(const LineConfig &config, QStringList &mistakes) const
{
    if (config.tags) {
        return *config.tags;
    }
    QString error;
    const auto file = readLineTags(config, m_driver, error);
    if (!file) {
        mistakes.append(error);
        return TagSet();
    }
    for (const Finding &mistake : file->mistakes().first()) {
        mistakes.append(config.tagFile + QLatin1Char(':') + mistake.placed());
    }
    return TagSet(file->tags());
}

void GatewayLine::reload(const LineConfig &config, const TagSet &tags)
{
    m_config = config;
    const TagDiff diff = m_reporter->setTags(tags, config.report);
    m_status->watch(stationsOf(tags));
    m_writer->setRules(config.writes, allowedValues());
    if (!diff.isEmpty()) {
        m_say(QString::fromLatin1("line %1: %2").arg(m_config.name, diff.text()));
    }
}

QVector<TopicNames> GatewayLine::told() const
{
    QVector<TopicNames> names{{m_config.name, QString(), QString()}};
    for (const int station : stationsOf(m_tags->tags())) {
        names.append({m_config.name, QString::number(station), QString()});
    }
    for (const Tag &tag : m_tags->tags().all()) {
        const QString station = QString::number(tag.item.station);
        for (int index = 0; index < tag.count; ++index) {
            names.append({m_config.name, station, tagText(tag, index)});
        }
    }
    return names;
}

// The session knows it before it tells that values are not good any more.
QString GatewayLine::lineCause() const
{
    const QString error = m_session->lineError();
    return error.isEmpty() ? m_status->lineCause() : error;
}

AllowedValues GatewayLine::allowedValues() const
{
    return {m_config.writes.allow, m_tags->tags(), m_driver.registers(),
            m_config.session.blockWords, [this](const Item &item, QString &error) {
                return m_driver.check(item, Access::Write, error);
            }};
}

void GatewayLine::open()
{
    m_status = std::make_unique<StatusReporter>(m_config.name, *m_session, m_clock, m_statusTaker);
    m_reporter = std::make_unique<TagReporter>(m_config.name, *m_tags, m_config.report, m_clock,
                                               m_taker, [this] { return lineCause(); });
    m_status->watch(stationsOf(m_tags->tags()));
    m_session->open();
}

void GatewayLine::close(const QString &cause)
{
    m_writer->end(QLatin1String("the line is being closed; nothing was sent"));
    m_status->end(cause);
    m_session->close();
}

} // namespace cnet::gateway
