#include "gateway/lines/line_set.h"
#include "gateway/support/changes.h"
#include "gateway/support/virtual_gateway_line.h"

#include <QElapsedTimer>
#include <QtTest>

using namespace cnet;
using namespace cnet::gateway;

/** Another configuration comes while lines run, in virtual time. */
class TestLineSet : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void leavesWhatIsTheSameAlone();
    void takesOtherTags();
    void takesOtherRules();
    void changesNothingWhereAFileIsBad();
    void beginsAndEndsLines();
    void opensAnewWhatTalksInAnotherWay();
    void missesNoPollWithManyTags();

private:
    LineConfig line(const char *name, const char *tagFile, const char *written = "") const
    {
        LineConfig config = m_lines->config(name, tagFile);
        config.written = QLatin1String(written);
        return config;
    }
    bool reload(const QVector<LineConfig> &lines) const
    {
        m_mistakes = m_set->prepare(lines);
        if (m_mistakes.isEmpty()) {
            m_set->apply();
        }
        return m_mistakes.isEmpty();
    }
    VirtualLine &link(const char *name) const { return *m_lines->links.value(QLatin1String(name)); }
    QString take() const
    {
        QStringList texts;
        for (const Change &change : std::exchange(m_lines->changes, {})) {
            texts.append(textOf(change));
        }
        return texts.join(QLatin1String(" "));
    }
    /** When the polls of a line were sent, on the clock. */
    QVector<qint64> pollTimes(const char *name, qint64 ms) const
    {
        QVector<qint64> times;
        for (qint64 left = ms; left > 0; --left) {
            const auto before = link(name).requests;
            m_lines->run(1);
            if (link(name).requests > before) {
                times.append(m_lines->clock.nowMs());
            }
        }
        return times;
    }

    std::unique_ptr<VirtualGatewayLines> m_lines;
    std::unique_ptr<LineSet> m_set;
    mutable QStringList m_mistakes;
};

namespace {

const char kHead[] = "name,register,address,unit\n";

qint64 longestGap(const QVector<qint64> &times)
{
    qint64 longest = 0;
    for (int i = 1; i < times.size(); ++i) {
        longest = std::max(longest, times.at(i) - times.at(i - 1));
    }
    return longest;
}

QByteArray manyTags(int count, const char *unit)
{
    QByteArray rows = kHead;
    for (int i = 0; i < count; ++i) {
        const QByteArray number = QByteArray::number(i);
        rows += "tag" + number + ",D_W," + number + ',' + unit + '\n';
    }
    return rows;
}

} // namespace

void TestLineSet::init()
{
    m_set.reset();
    m_lines = std::make_unique<VirtualGatewayLines>();
    m_set = std::make_unique<LineSet>(
        m_lines->clock, [this](const LineConfig &config) { return m_lines->makeLink(config); },
        [this](const Change &change) { m_lines->note(change); },
        [this](const LineStatus &status) { m_lines->note(status); },
        [this](const QString &text) { m_lines->said.append(text); });
    m_lines->store("a.csv", QByteArray(kHead) + "a,D_W,5,\nb,D_W,6,\n");
    m_lines->store("b.csv", QByteArray(kHead) + "x,D_W,5,\n");
    QVERIFY(reload({line("press", "a.csv"), line("oven", "b.csv")}));
    m_lines->run(1000);
    QCOMPARE(take(), QLatin1String("a=0 b=0 x=0"));
    m_lines->said.clear();
    m_lines->statuses.clear();
}

void TestLineSet::leavesWhatIsTheSameAlone()
{
    const VirtualLine *const press = &link("press");
    link("press").sent.clear();
    const QVector<qint64> before = pollTimes("press", 2000);
    QVERIFY(reload({line("press", "a.csv"), line("oven", "b.csv")}));
    const QVector<qint64> after = pollTimes("press", 2000);
    QCOMPARE(&link("press"), press);
    QCOMPARE(after.size(), before.size());
    QCOMPARE(longestGap(after), longestGap(before));
    QCOMPARE(take(), QString());
    QVERIFY(m_lines->statuses.isEmpty());
    QCOMPARE(m_lines->said, QStringList());
}

void TestLineSet::takesOtherTags()
{
    link("press").bus.find(1)->station.memory().setWord('D', 6, 8);
    m_lines->run(1000);
    QCOMPARE(take(), QLatin1String("b=8"));
    // In another order: b as it was, a in another unit, c new.
    m_lines->store("a.csv", QByteArray(kHead) + "c,D_W,7,\nb,D_W,6,\na,D_W,5,mm\n");
    const VirtualLine *const press = &link("press");
    QVERIFY(reload({line("press", "a.csv"), line("oven", "b.csv")}));
    QCOMPARE(take(), QLatin1String("a=0")); // with its unit, as it was read last
    QCOMPARE(&link("press"), press);
    m_lines->run(1000);
    QCOMPARE(take(), QLatin1String("c=0"));
    link("press").bus.find(1)->station.memory().setWord('D', 6, 9);
    link("press").bus.find(1)->station.memory().setWord('D', 7, 1);
    m_lines->run(1000);
    QCOMPARE(take(), QLatin1String("c=1 b=9"));
    QCOMPARE(m_lines->said, QStringList({QLatin1String("line press: tags: 1 added, 1 changed "
                                                       "(a: unit), 1 unchanged")}));
    m_lines->store("a.csv", QByteArray(kHead) + "b,D_W,6,\n");
    QVERIFY(reload({line("press", "a.csv"), line("oven", "b.csv")}));
    QCOMPARE(take(), QLatin1String("c=1(stale) a=0(stale)"));
    m_lines->run(5000);
    QCOMPARE(take(), QString());
}

void TestLineSet::takesOtherRules()
{
    LineConfig press = line("press", "a.csv");
    press.report.longestMs = 1000;
    QVERIFY(reload({press, line("oven", "b.csv")}));
    take();
    m_lines->run(10000);
    QCOMPARE(take().count(QLatin1String("a=0")), 10);
    QVERIFY(reload({line("press", "a.csv"), line("oven", "b.csv")}));
    m_lines->run(10000);
    QCOMPARE(take(), QString());
}

void TestLineSet::changesNothingWhereAFileIsBad()
{
    m_lines->store("a.csv", QByteArray(kHead) + "c,D_W,7,\n");
    m_lines->store("b.csv", QByteArray(kHead) + "x,D_W,10000,\ny,Q,1,\n");
    const VirtualLine *const press = &link("press");
    QVERIFY(!reload(
        {line("press", "a.csv", "faster"), line("oven", "b.csv"), line("new", "none.csv")}));
    QCOMPARE(int(m_mistakes.size()), 3);
    QVERIFY2(m_mistakes.first().contains(QLatin1String("b.csv:2:")),
             qPrintable(m_mistakes.first()));
    m_lines->run(5000);
    QCOMPARE(take(), QString());
    QVERIFY(m_lines->statuses.isEmpty());
    QVERIFY(press->isOpen());
    QCOMPARE(m_set->all().size(), size_t(2));
}

void TestLineSet::beginsAndEndsLines()
{
    QVERIFY(reload({line("oven", "b.csv"), line("saw", "b.csv")}));
    QCOMPARE(take(), QLatin1String("a=0(line down) b=0(line down)"));
    QVERIFY(!m_lines->links.value(QLatin1String("press")));
    QCOMPARE(m_lines->statuses.first().cause,
             QLatin1String("the line was taken out of the configuration"));
    m_lines->run(1000);
    QVERIFY(take().endsWith(QLatin1String(" x=0")));
    QVERIFY(m_lines->statuses.last().state == LineStatus::State::Good);
    QCOMPARE(m_lines->statuses.last().line, QLatin1String("saw"));
    m_set->close(QLatin1String("the gateway ended"));
    QCOMPARE(take(), QLatin1String("x=0(line down) x=0(line down)"));
}

void TestLineSet::opensAnewWhatTalksInAnotherWay()
{
    const QPointer<VirtualLine> press = &link("press");
    const QPointer<VirtualLine> oven = &link("oven");
    QVERIFY(reload({line("press", "a.csv", "faster"), line("oven", "b.csv")}));
    QVERIFY(!press);
    QVERIFY(oven && oven->isOpen());
    m_lines->run(1000);
    const QString told = take();
    QVERIFY2(told.startsWith(QLatin1String("a=0(line down) b=0(line down) ")), qPrintable(told));
    QVERIFY2(told.endsWith(QLatin1String(" a=0 b=0")), qPrintable(told));
}

void TestLineSet::missesNoPollWithManyTags()
{
    const int count = 10000;
    m_lines->store("a.csv", manyTags(count, "mm"));
    QVERIFY(reload({line("press", "a.csv"), line("oven", "b.csv")}));
    m_lines->run(10000);
    take();
    const QVector<qint64> before = pollTimes("press", 2000);
    const QVector<qint64> ovenBefore = pollTimes("oven", 1000);
    m_lines->store("a.csv", manyTags(count, "mm") + "more,D_W,3,\n");
    QElapsedTimer timer;
    timer.start();
    QVERIFY(reload({line("press", "a.csv"), line("oven", "b.csv")}));
    qInfo("reloaded in %lld ms", static_cast<long long>(timer.elapsed()));
    const QVector<qint64> after = pollTimes("press", 2000);
    const QVector<qint64> ovenAfter = pollTimes("oven", 1000);
    QVERIFY(qAbs(after.size() - before.size()) <= 2);
    QCOMPARE(longestGap(after), longestGap(before));
    QCOMPARE(ovenAfter.size(), ovenBefore.size());
    m_lines->run(10000);
    QCOMPARE(take(), QLatin1String("more=0"));
}

QTEST_GUILESS_MAIN(TestLineSet)
#include "test_line_set.moc"
