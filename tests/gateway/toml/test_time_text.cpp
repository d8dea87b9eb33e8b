#include "gateway/toml/time_text.h"
#include "support/rows.h"

using namespace cnet::gateway;

class TestTimeText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { qputenv("TZ", "CET-1"); }
    void readsTimes_data();
    void readsTimes();
};

namespace {

const qint64 kNowMs = 1700000000000; // 2023-11-14T22:13:20Z
constexpr qint64 kNone = -1;

const Case<const char *, qint64> kTimes[] = {
    {"ago", "90m", kNowMs - 5400000},
    {"days ago", "3d", kNowMs - 259200000},
    {"UTC", "2023-11-14T22:13:20Z", kNowMs},
    {"a zone", "2023-11-15T00:13:20+02:00", kNowMs},
    {"local", "2023-11-14T23:13:20", kNowMs},
    {"without seconds", "2023-11-14T23:13", kNowMs - 20000},
    {"a day", "2023-11-14", kNowMs - 83600000},
    {"fractions", "2023-11-14T22:13:20.5Z", kNowMs + 500},
    {"no time", "yesterday", kNone},
    {"no such day", "2023-02-30", kNone},
    {"empty", "", kNone},
};

} // namespace

void TestTimeText::readsTimes_data()
{
    addRows(kTimes);
}

void TestTimeText::readsTimes()
{
    const auto &row = currentRow(kTimes);
    const auto ms = parseTime(QLatin1String(row.given), kNowMs);
    QCOMPARE(ms.value_or(kNone), row.expected);
    if (ms) {
        QCOMPARE(parseTime(utcText(*ms), kNowMs).value_or(kNone), row.expected);
    }
}

QTEST_APPLESS_MAIN(TestTimeText)
#include "test_time_text.moc"
