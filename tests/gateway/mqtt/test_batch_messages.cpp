#include "gateway/mqtt/batch_messages.h"

#include "gateway/support/changes.h"
#include "support/text.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

#include <limits>
#include <memory>
#include <utility>

using namespace cnet;
using namespace cnet::gateway;

/** A batch becomes messages, of which none loses a change or its place. */
class TestBatchMessages : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sendsEachByItself();
    void groupsByLineAndStation();
    void beginsAnewWhereATagComesAgain();
    void knowsATagOfAnotherFileAgain();
    void keepsBatchesApart();
    void forgetsTagsInTheEnd();
    void keepsMessagesShort();
    void marksABacklog();
    void keepsNumbersExact();
};

namespace {

TopicTemplate templateOf(const char *text)
{
    QString error;
    return TopicTemplate::parse(latin(text), latin("plant"), error).value_or(TopicTemplate());
}

std::shared_ptr<ChangeSource> sourceAt(const char *line, int station, const char *tag)
{
    auto source = sourceOf(tag);
    source->line = latin(line);
    source->station = station;
    return source;
}

QStringList textsOf(const QVector<MqttMessage> &messages)
{
    QStringList texts;
    for (const MqttMessage &message : messages) {
        texts.append(message.topic + QLatin1Char(' ') + QString::fromUtf8(message.payload));
    }
    return texts;
}

SinkBatch batchOf(const QVector<Change> &changes)
{
    SinkBatch batch;
    batch.number = 1;
    batch.changes = changes;
    return batch;
}

} // namespace

void TestBatchMessages::sendsEachByItself()
{
    BatchMessages messages(templateOf("{site}/{line}/{station}/{tag}"), false);
    Change bad = changeOf(sourceAt("oven", 2, "b"), Scalar());
    bad.quality = Quality::NoAnswer;
    bad.cause = latin("no answer within 300 ms");
    QCOMPARE(textsOf(messages.of(batchOf({changeOf(sourceAt("press", 1, "a"), qint64(1)), bad}))),
             QStringList({latin(R"(plant/press/1/a {"v":1,"q":"good","t":1000})"),
                          latin(R"(plant/oven/2/b {"v":null,"q":"no answer",)"
                                R"("why":"no answer within 300 ms","t":1000})")}));
}

void TestBatchMessages::groupsByLineAndStation()
{
    BatchMessages messages(templateOf("{site}/{line}/{station}"), false);
    QCOMPARE(textsOf(messages.of(batchOf({changeOf(sourceAt("press", 1, "a"), qint64(1)),
                                          changeOf(sourceAt("press", 2, "a"), qint64(2)),
                                          changeOf(sourceAt("press", 1, "\"b"), qint64(3))}))),
             QStringList({latin(R"(plant/press/1 {"a":{"v":1,"q":"good","t":1000},)"
                                R"("\"b":{"v":3,"q":"good","t":1000}})"),
                          latin(R"(plant/press/2 {"a":{"v":2,"q":"good","t":1000}})")}));
}

void TestBatchMessages::beginsAnewWhereATagComesAgain()
{
    BatchMessages messages(templateOf("{site}/{line}"), false);
    const auto a = sourceAt("press", 1, "a");
    const auto b = sourceAt("press", 1, "b");
    QCOMPARE(textsOf(messages.of(batchOf({changeOf(a, qint64(1)), changeOf(b, qint64(2)),
                                          changeOf(a, qint64(3)), changeOf(a, qint64(4))}))),
             QStringList({latin(R"(plant/press {"a":{"v":1,"q":"good","t":1000},)"
                                R"("b":{"v":2,"q":"good","t":1000}})"),
                          latin(R"(plant/press {"a":{"v":3,"q":"good","t":1000}})"),
                          latin(R"(plant/press {"a":{"v":4,"q":"good","t":1000}})")}));
}

void TestBatchMessages::knowsATagOfAnotherFileAgain()
{
    BatchMessages messages(templateOf("{site}/{line}"), false);
    QCOMPARE(messages
                 .of(batchOf({changeOf(sourceAt("press", 1, "a"), qint64(1)),
                              changeOf(sourceAt("press", 1, "a"), qint64(2))}))
                 .size(),
             2);
}

// What it remembers of a tag is the tag's, and not the batch's.
void TestBatchMessages::keepsBatchesApart()
{
    BatchMessages messages(templateOf("{site}/{line}"), false);
    const auto a = sourceAt("press", 1, "a");
    const auto b = sourceAt("oven", 1, "b");
    messages.of(batchOf({changeOf(a, qint64(1)), changeOf(b, qint64(2))}));
    QCOMPARE(textsOf(messages.of(batchOf({changeOf(a, qint64(3))}))),
             QStringList(latin(R"(plant/press {"a":{"v":3,"q":"good","t":1000}})")));
    QCOMPARE(textsOf(messages.of(batchOf({changeOf(b, qint64(4)), changeOf(b, qint64(5))}))),
             QStringList({latin(R"(plant/oven {"b":{"v":4,"q":"good","t":1000}})"),
                          latin(R"(plant/oven {"b":{"v":5,"q":"good","t":1000}})")}));
}

// Tag files may be loaded for ever.
void TestBatchMessages::forgetsTagsInTheEnd()
{
    BatchMessages messages(templateOf("{site}/{line}/{station}/{tag}"), false);
    QVector<Change> changes;
    for (int i = 0; i <= kMostKnownSources; ++i) {
        changes.append(changeOf(sourceAt("press", 1, "a"), qint64(i)));
    }
    const std::weak_ptr<const ChangeSource> first = changes.first().source;
    messages.of(batchOf(std::exchange(changes, {})));
    QVERIFY(!first.expired());
    const auto next = changeOf(sourceAt("oven", 1, "b"), qint64(1));
    QCOMPARE(messages.of(batchOf({next})).first().topic, latin("plant/oven/1/b"));
    QVERIFY(first.expired());
}

void TestBatchMessages::keepsMessagesShort()
{
    BatchMessages messages(templateOf("{site}/{line}"), false);
    QVector<Change> changes;
    for (int i = 0; i < 5000; ++i) {
        const QByteArray tag = "tag" + QByteArray::number(i);
        changes.append(changeOf(sourceAt("press", 1, tag.constData()), qint64(i)));
    }
    int count = 0;
    for (const MqttMessage &message : messages.of(batchOf(changes))) {
        QVERIFY(message.payload.size() < 61000);
        count += int(QJsonDocument::fromJson(message.payload).object().size());
    }
    QCOMPARE(count, 5000);
}

void TestBatchMessages::marksABacklog()
{
    BatchMessages messages(templateOf("{site}/{line}/{tag}"), true);
    SinkBatch batch = batchOf({changeOf(sourceOf("a"), qint64(1))});
    QVERIFY(messages.of(batch).first().isRetained);
    batch.age = SinkBatch::Age::Backlog;
    const MqttMessage old = messages.of(batch).first();
    QVERIFY(!old.isRetained);
    QVERIFY(old.payload.endsWith(R"(,"old":true})"));
}

void TestBatchMessages::keepsNumbersExact()
{
    BatchMessages messages(templateOf("{site}/{line}/{tag}"), true);
    const auto source = sourceOf("a");
    const auto made =
        messages.of(batchOf({changeOf(source, Scalar(qint64(9007199254740993))),
                             changeOf(source, Scalar(12.1)), changeOf(source, Scalar(true))}));
    QVERIFY(made.at(0).payload.startsWith(R"({"v":"9007199254740993",)"));
    QVERIFY(made.at(1).payload.startsWith(R"({"v":12.1,)"));
    QVERIFY(made.at(2).payload.startsWith(R"({"v":true,)"));
}

QTEST_APPLESS_MAIN(TestBatchMessages)
#include "test_batch_messages.moc"
