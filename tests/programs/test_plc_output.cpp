#include "complaint.h"
#include "program.h"

#include <QFileInfo>
#include <QTemporaryDir>
#include <QtTest>

/** cnet-plc whose standard output takes nothing: it must not run where nobody can find it. */
class TestPlcOutput : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void saysThatOutputIsLost_data();
    void saysThatOutputIsLost();
    void removesTheLink();
};

namespace {

const int kCannotWrite = 2;
const char *const kPlaces[] = {"/dev/full", "&-"};
const QByteArray kComplaint = "cannot write to standard output: ";

} // namespace

void TestPlcOutput::saysThatOutputIsLost_data()
{
    QTest::addColumn<QList<QByteArray>>("arguments");
    const auto row = [](const QList<QByteArray> &arguments) {
        QTest::newRow(arguments.join(' ').constData()) << arguments;
    };
    row({"--help"});
    row({"--version"});
    row({"--tcp", "0"});
    row({"--tcp", "0", "--tcp", "0", "--trace"});
    row({"--pty"});
}

void TestPlcOutput::saysThatOutputIsLost()
{
    QFETCH(QList<QByteArray>, arguments);
    for (const char *const place : kPlaces) {
        Program plc;
        plc.setOutput(place);
        QVERIFY(plc.startBytes(CNET_PLC, arguments));
        QCOMPARE(plc.exitCode(), kCannotWrite);
        QCOMPARE(faultOfComplaint(plc.errors(), "cnet-plc", kComplaint), QByteArray());
    }
}

void TestPlcOutput::removesTheLink()
{
    const QTemporaryDir directory;
    const QString link = directory.filePath(QLatin1String("plc"));
    for (const char *const place : kPlaces) {
        Program plc;
        plc.setOutput(place);
        QVERIFY(plc.startBytes(CNET_PLC, {"--pty", link.toLocal8Bit()}));
        QCOMPARE(plc.exitCode(), kCannotWrite);
        QVERIFY(!QFileInfo(link).isSymLink());
    }
}

QTEST_GUILESS_MAIN(TestPlcOutput)
#include "test_plc_output.moc"
