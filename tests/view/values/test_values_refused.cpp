#include "shown_values.h"

using namespace cnet;
using namespace cnet::view;

/** Tags of a project that are too many for the table: the project keeps them. */
class TestValuesRefused : public QObject, private ShownValues
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QVERIFY(show()); }
    void cleanup() { close(); }

    void keepsTooManyTagsUntilOthersCome();

private:
    QJsonValue savedTags() const { return m_page->saved().value(QLatin1String("tags")); }
};

void TestValuesRefused::keepsTooManyTagsUntilOthersCome()
{
    QString many = latin("name,register,address,count\n");
    for (int i = 0; i < 30; ++i) {
        many += QString::fromLatin1("a%1,D_W,0,10000\n").arg(i);
    }
    m_page->setTags(m_plant->read(kTags));
    QSignalSpy troubled(m_page.get(), &Page::troubled);
    m_page->restore({{latin("tags"), many}});
    QCOMPARE(int(troubled.count()), 1);
    QVERIFY(names().isEmpty());
    QCOMPARE(savedTags(), QJsonValue(many));
    m_page->setTags(m_plant->read(kTags));
    QVERIFY(savedTags().toString().contains(latin("oil.speed")));
    QVERIFY(!savedTags().toString().contains(latin("10000")));
}

QTEST_MAIN(TestValuesRefused)
#include "test_values_refused.moc"
