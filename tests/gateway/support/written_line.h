#pragma once

#include "gateway/write/line_writer.h"
#include "host/support/virtual_plant.h"

#include <host/tagfile/tag_monitor.h>

namespace cnet::gateway {

inline SessionOptions writtenLineOptions()
{
    SessionOptions options;
    options.firstOpen = FirstOpen::Again;
    return options;
}

inline AllowRule ruleOf(const char *pattern)
{
    AllowRule rule;
    rule.pattern = QLatin1String(pattern);
    return rule;
}

/** Often enough for tests of something else. */
inline WriteRules writeRules(const QVector<AllowRule> &allow = {ruleOf("*")})
{
    WriteRules rules;
    rules.allow = allow;
    rules.line = {6000, 1000};
    rules.value = {6000, 1000};
    return rules;
}

inline WriteRequest requestOf(const QString &id, const QString &tag, const QString &value)
{
    WriteRequest request;
    request.id = id;
    request.line = QLatin1String("press");
    request.tag = tag;
    request.value = value;
    request.reply.sink = QLatin1String("sink");
    return request;
}

inline WriteRequest requestOf(const char *id, const char *tag, const char *value)
{
    return requestOf(QString::fromUtf8(id), QString::fromUtf8(tag), QString::fromUtf8(value));
}

/** "1 taken 12.5", "2 refused: the line is down" */
inline QString textOf(const WriteAnswer &answer)
{
    static const char *const kOutcomes[] = {"taken", "refused", "no answer", "superseded"};
    QString text =
        answer.id + QLatin1Char(' ') + QLatin1String(kOutcomes[static_cast<int>(answer.outcome)]);
    if (!answer.reason.isEmpty()) {
        text += QLatin1String(": ") + answer.reason;
    }
    return answer.isNow.isEmpty() ? text
                                  : text + QLatin1String(" [") + answer.isNow + QLatin1Char(']');
}

/** What answers are compared with. */
inline QStringList texts(std::initializer_list<const char *> all)
{
    QStringList list;
    for (const char *text : all) {
        list.append(QString::fromUtf8(text));
    }
    return list;
}

/** True for a request that writes. */
inline bool isWrite(const QByteArray &request)
{
    return request.mid(3, 2) == "wS";
}

/** A line in virtual time with tags that may be written, and what was answered. */
struct WrittenLine
{
    static constexpr const char *kTags =
        "name,register,address,station,type,count,scale,min,max,access\n"
        "speed,D_W,10,,u16,,0.1,0,120,\n"
        "count,D_W,11,,u16,,,,,\n"
        "fixed,D_W,12,,u16,,,,,read\n"
        "zones,D_W,20,,i16,4,0.1,,,\n"
        "big,D_W,40,,u64,,,,,\n"
        "flag,D_W,50,,bit3,,,,,\n"
        "lamp,M_bit,3.5,,bool,,,,,\n"
        "name,D_W,60,,string8,,,,,\n"
        "ratio,D_W,70,,f32,,,,,\n"
        "recipe,D_W,100,,string150,,,,,\n"
        "far,D_W,9000,2,u16,,,,,\n"
        "other,D_W,10,2,u16,,,,,\n"
        "extra,D_W,13,,u16,,,,,\n"
        "more,D_W,14,2,u16,,,,,\n";

    explicit WrittenLine(const WriteRules &rules = writeRules())
        : plant(writtenLineOptions(), {1, 2})
    {
        plant.line->bus.add(2, plc::Model::K120s); // it has no D 9000
        const TagFile file =
            TagFile::parse(kTags, {plant.driver.registers(),
                                   [](const Item &, TagAccess, QString &) { return true; }});
        tags = new TagMonitor(plant.session->monitor(), TagSet(file.tags()));
        writer = std::make_unique<LineWriter>(rules, allowed(rules), *plant.session, plant.clock);
        QObject::connect(writer.get(), &LineWriter::answered, writer.get(),
                         [this](const WriteAnswer &answer) { answers.append(answer); });
    }

    AllowedValues allowed(const WriteRules &rules) const
    {
        return {rules.allow, tags->tags(), plant.driver.registers(), 60,
                [this](const Item &item, QString &error) {
                    return plant.driver.check(item, Access::Write, error);
                }};
    }

    void open() { plant.open(2000); }

    void ask(const char *id, const char *tag, const char *value)
    {
        writer->ask(requestOf(id, tag, value), plant.clock.nowMs());
    }

    /** What was answered since the last call. */
    QStringList take()
    {
        QStringList texts;
        for (const WriteAnswer &answer : std::exchange(answers, {})) {
            texts.append(textOf(answer));
        }
        return texts;
    }

    QStringList askAndWait(const char *id, const char *tag, const char *value, qint64 ms = 3000)
    {
        ask(id, tag, value);
        plant.run(ms);
        return take();
    }

    /** Writes that went out since the last call: "01wSB08%DW001001007D". */
    QStringList takeWrites() { return plant.takeFrames("wS"); }

    VirtualPlant plant;
    TagMonitor *tags = nullptr; ///< the session's
    std::unique_ptr<LineWriter> writer;
    QVector<WriteAnswer> answers;
};

} // namespace cnet::gateway
