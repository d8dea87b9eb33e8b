#include <host/value/json_value.h>

#include "support/rows.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <limits>

using namespace cnet;

class TestJsonValue : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keepsNumbersExact_data();
    void keepsNumbersExact();
    void writesWhatReadersRead_data();
    void writesWhatReadersRead();
};

namespace {

const Case<Scalar, const char *> kValues[] = {
    {"nothing", Scalar(), "[null]"},
    {"truth", false, "[false]"},
    {"fraction", 12.5, "[12.5]"},
    {"text", QLatin1String("a\"b"), "[\"a\\\"b\"]"},
    {"the last that a double holds", qint64(9007199254740992), "[9007199254740992]"},
    {"one more", qint64(9007199254740993), "[\"9007199254740993\"]"},
    {"below 0", qint64(-9007199254740993), "[\"-9007199254740993\"]"},
    {"64 bits", std::numeric_limits<quint64>::max(), "[\"18446744073709551615\"]"},
};

const Given<QString> kTexts[] = {
    {"empty", QString()},
    {"quotation marks", QLatin1String("a\"b\\c/d")},
    {"control characters", QString::fromUtf8("\n\t\x01\x1f\x7f")},
    {"beyond ASCII", QString::fromUtf8("Presse \xc3\xb6, \xf0\x9f\x94\xa5")},
};

} // namespace

void TestJsonValue::keepsNumbersExact_data()
{
    addRows(kValues);
}

void TestJsonValue::keepsNumbersExact()
{
    const auto &row = currentRow(kValues);
    QCOMPARE(QJsonDocument(QJsonArray{jsonValue(row.given)}).toJson(QJsonDocument::Compact),
             QByteArray(row.expected));
    QByteArray text;
    appendJson(text, row.given);
    QCOMPARE('[' + text + ']', QByteArray(row.expected));
}

void TestJsonValue::writesWhatReadersRead_data()
{
    addRows(kTexts);
}

void TestJsonValue::writesWhatReadersRead()
{
    const auto &row = currentRow(kTexts);
    QByteArray text("[");
    appendJson(text, row.given);
    appendJson(text += ',', Scalar(0.1));
    appendJson(text += ',', Scalar(std::numeric_limits<double>::quiet_NaN()));
    const QJsonArray read = QJsonDocument::fromJson(text + ']').array();
    QCOMPARE(read.at(0).toString(), row.given);
    QCOMPARE(read.at(1).toDouble(), 0.1);
    QVERIFY(read.at(2).isNull());
}

QTEST_APPLESS_MAIN(TestJsonValue)
#include "test_json_value.moc"
