#include "view/support/watched_line.h"
#include "view/tags/tag_drag.h"

#include "host/value/typed_value.h"

using namespace cnet;
using namespace cnet::view;

/** The tags of a window, with a line and without one. */
class TestWatchedTags : public QObject, private WatchedLine
{
    Q_OBJECT

private Q_SLOTS:
    void init() { begin(); }
    void readsAsTheLineOpens();
    void keepsWhatWasKnown();
    void keepsWhatStays();
    void beginsAnewWithASession();
    void saysWhatIsWrongWithAnItem();
    void carriesNames();

private:
    Tag tag(const char *text)
    {
        QString error;
        const auto result = m_tags->parse(QString::fromLatin1(text), error);
        if (!result) {
            qFatal("%s", qPrintable(error));
        }
        return *result;
    }
    void openAndRead()
    {
        Connection fast;
        fast.address.line.baud = 0;
        m_line->open(fast);
        QTRY_VERIFY_WITH_TIMEOUT(m_tags->quality(0) == Quality::Good, kLongMs);
    }
};

void TestWatchedTags::readsAsTheLineOpens()
{
    m_tags->setTags(TagSet({tag("D_W:110@u16*0.1")}));
    QVERIFY(m_tags->quality(0) == Quality::NeverRead);
    QVERIFY(!m_tags->values(0).at(0).value.isKnown());
    QSignalSpy changed(m_tags.get(), &WatchedTags::valuesChanged);
    openAndRead();
    QVERIFY(changed.count() > 0);
    QVERIFY(m_tags->values(0).at(0).value.isGood());
}

void TestWatchedTags::keepsWhatWasKnown()
{
    m_tags->setTags(TagSet({tag("D_W:100")}));
    openAndRead();
    const auto before = m_tags->values(0).at(0).value;
    QSignalSpy states(m_tags.get(), &WatchedTags::stateChanged);
    m_line->close();
    QVERIFY(m_tags->quality(0) == Quality::LineDown);
    QCOMPARE(m_tags->values(0).at(0).value, before);
    QCOMPARE(states.count(), 1);
    // Also where other tags come.
    m_tags->setTags(TagSet({tag("D_W:101"), tag("D_W:100")}));
    QVERIFY(m_tags->quality(0) == Quality::NeverRead);
    QVERIFY(m_tags->quality(1) == Quality::LineDown);
    QCOMPARE(m_tags->values(1).at(0).value, before);
}

void TestWatchedTags::keepsWhatStays()
{
    m_tags->setTags(TagSet({tag("D_W:100")}));
    openAndRead();
    QSignalSpy tagsChanged(m_tags.get(), &WatchedTags::tagsChanged);
    m_tags->setTags(TagSet({tag("D_W:101"), tag("D_W:100")}));
    QCOMPARE(tagsChanged.count(), 1);
    QVERIFY(m_tags->quality(0) == Quality::NeverRead);
    QVERIFY(m_tags->quality(1) == Quality::Good);
}

void TestWatchedTags::beginsAnewWithASession()
{
    m_tags->setTags(TagSet({tag("D_W:100")}));
    openAndRead();
    m_line->open(Connection()); // it may be another PLC
    QVERIFY(m_tags->quality(0) == Quality::NeverRead);
    QVERIFY(!m_tags->values(0).at(0).value.isKnown());
}

void TestWatchedTags::saysWhatIsWrongWithAnItem()
{
    QString error;
    QVERIFY(!m_tags->parse(QLatin1String("D_W:99999"), error));
    QVERIFY(error.contains(QLatin1String("D_W:99999")));
    error.clear();
    QVERIFY(!m_tags->parse(QLatin1String("what"), error));
    QVERIFY(!error.isEmpty());
}

void TestWatchedTags::carriesNames()
{
    const QStringList names{QLatin1String("press.speed"), QLatin1String("D_W:100")};
    const auto data = mimeOfTags(names);
    QCOMPARE(tagsOfMime(data.get()), names);
    QCOMPARE(data->text(), QLatin1String("press.speed\nD_W:100"));
    QMimeData other;
    other.setText(QLatin1String("press.speed"));
    QCOMPARE(tagsOfMime(&other), QStringList());
    QCOMPARE(tagsOfMime(nullptr), QStringList());
}

QTEST_GUILESS_MAIN(TestWatchedTags)
#include "test_watched_tags.moc"
