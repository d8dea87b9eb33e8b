#include "table_of_values.h"

#include "support/rows.h"

using namespace cnet;
using namespace cnet::view;

/** What the table of values writes, and what it says of each write. */
class TestValuesWriting : public QObject, private TableOfValues
{
    Q_OBJECT

private Q_SLOTS:
    void init() { begin(); }
    void cleanup() { end(); }

    void tellsOnlyOfTheRowThatChanged();
    void writesAndReadsBack();
    void saysWhyNothingWasSent();
    void saysWhyNothingWasSent_data();
    void sendsNothingWithoutALine();
    void saysThatThePlcRefused();
    void saysThatThePlcWasSilent();
    void saysWhatIsLeftOpenByAnEnd();
    void tellsOfTheLastWriteOnly();
    void forgetsWritesOfRowsThatAreGone();
    void writesABitOfAWord();

private:
    struct Unsent
    {
        const char *what;
        int row;
        const char *text;
        const char *reason;
    };

    static const Unsent kUnsent[];

    QString note(int row) const { return shown(row, ValueColumn::Write); }
};

void TestValuesWriting::tellsOnlyOfTheRowThatChanged()
{
    openAndRead(kPatienceMs);
    QSet<int> told;
    connect(m_model.get(), &QAbstractItemModel::dataChanged, this,
            [&](const QModelIndex &first, const QModelIndex &last) {
                for (int row = first.row(); row <= last.row(); ++row) {
                    // What was known before may be told of late.
                    if (m_model->row(0).write.stage != WriteStage::None) {
                        told.insert(row);
                    }
                }
            });
    QTRY_VERIFY_WITH_TIMEOUT(!m_model->isTelling(), kPatienceMs);
    QVERIFY(write(0, "5"));
    QTRY_COMPARE_WITH_TIMEOUT(stage(0), WriteStage::Taken, kPatienceMs);
    QTRY_VERIFY_WITH_TIMEOUT(!m_model->isTelling(), kPatienceMs);
    QCOMPARE(told, QSet<int>{0});
}

void TestValuesWriting::writesAndReadsBack()
{
    openAndRead(kPatienceMs);
    QVERIFY(write(0, " 45.6 1/min"));
    QCOMPARE(stage(0), WriteStage::Waiting);
    QVERIFY(note(0).contains(latin("waiting")));
    QTRY_COMPARE_WITH_TIMEOUT(stage(0), WriteStage::Taken, kPatienceMs);
    QCOMPARE(note(0), latin("taken, reads 45.6 1/min"));
    QCOMPARE(m_plant->word(1000), 456);
    // One value of an array leaves its neighbours alone.
    m_plant->setWord(1012, 3);
    QVERIFY(write(6, "77"));
    QTRY_COMPARE_WITH_TIMEOUT(stage(6), WriteStage::Taken, kPatienceMs);
    QCOMPARE(m_plant->word(1013), 77);
    QCOMPARE(m_plant->word(1012), 3);
    QVERIFY(!write(1, "5")); // may only be read
    QCOMPARE(stage(1), WriteStage::None);
    QVERIFY(!m_model->flags(m_model->index(1, static_cast<int>(ValueColumn::Value)))
                 .testFlag(Qt::ItemIsEditable));
}

const TestValuesWriting::Unsent TestValuesWriting::kUnsent[] = {
    {"above the bound", 0, "130", "120"},
    {"no number", 0, "fast", "a number"},
    {"no text of the enum", 2, "faster", "fast"},
    {"too long", 16, "abcdefgh", "4"},
};

void TestValuesWriting::saysWhyNothingWasSent_data()
{
    addRows(kUnsent);
}

void TestValuesWriting::saysWhyNothingWasSent()
{
    openAndRead(kPatienceMs);
    const auto &row = currentRow(kUnsent);
    QSignalSpy sent(m_plant->line().session(), &Session::requestSent);
    QVERIFY(write(row.row, row.text));
    QCOMPARE(stage(row.row), WriteStage::NotSent);
    QVERIFY2(note(row.row).contains(latin(row.reason)), qPrintable(note(row.row)));
    QVERIFY(note(row.row).startsWith(latin("not sent: ")));
    QCOMPARE(sent.count(), 0);
}

void TestValuesWriting::sendsNothingWithoutALine()
{
    QVERIFY(write(0, "1"));
    QCOMPARE(note(0), latin("not sent: not connected"));
    openAndRead();
    QCOMPARE(m_plant->word(1000), 0); // nor later
}

void TestValuesWriting::saysThatThePlcRefused()
{
    openAndRead(kPatienceMs);
    m_plant->plc().faults.add({plc::FaultKind::Refuse, 0x1132, 0, 1});
    QVERIFY(write(0, "5"));
    QTRY_COMPARE_WITH_TIMEOUT(stage(0), WriteStage::Refused, kPatienceMs);
    QVERIFY2(note(0).startsWith(latin("refused: 1132")), qPrintable(note(0)));
    QVERIFY2(note(0).contains(latin("it holds 0.0 1/min")), qPrintable(note(0)));
    QCOMPARE(toneOf(stage(0)), Tone::Bad);
}

void TestValuesWriting::saysThatThePlcWasSilent()
{
    openAndRead(kPatienceMs, 20);
    m_plant->plc().faults.add({plc::FaultKind::Silence});
    QVERIFY(write(0, "5"));
    QTRY_COMPARE_WITH_TIMEOUT(stage(0), WriteStage::NoAnswer, kPatienceMs);
    QVERIFY2(note(0).startsWith(latin("no answer")), qPrintable(note(0)));
}

void TestValuesWriting::saysWhatIsLeftOpenByAnEnd()
{
    openAndRead(kPatienceMs, kPatienceMs);
    m_plant->plc().faults.add({plc::FaultKind::Silence});
    QSignalSpy sent(m_plant->line().session(), &Session::requestSent);
    QVERIFY(write(0, "5"));
    QTRY_VERIFY_WITH_TIMEOUT(sent.count() > 0, kPatienceMs);
    QCOMPARE(stage(0), WriteStage::Waiting);
    // What waits is seen, and counts as little as what the PLC never took.
    QTRY_COMPARE_WITH_TIMEOUT(shown(0, ValueColumn::Value), latin("5.0 1/min"), kPatienceMs);
    QCOMPARE(shown(0, ValueColumn::Max), latin("0.0"));
    QVERIFY(write(2, "slow")); // waits behind it, and never goes out
    m_plant->line().close();
    QCOMPARE(stage(0), WriteStage::NotConfirmed);
    QCOMPARE(stage(2), WriteStage::NotSent);
    QVERIFY(!note(0).isEmpty());
}

void TestValuesWriting::tellsOfTheLastWriteOnly()
{
    openAndRead(kPatienceMs);
    QVERIFY(write(0, "5"));
    QVERIFY(write(0, "6"));
    QStringList notes;
    connect(m_model.get(), &QAbstractItemModel::dataChanged, this, [&](const QModelIndex &cell) {
        if (cell.column() == static_cast<int>(ValueColumn::Write)) {
            notes.append(note(0));
        }
    });
    QTRY_COMPARE_WITH_TIMEOUT(stage(0), WriteStage::Taken, kPatienceMs);
    QCOMPARE(notes, QStringList{latin("taken, reads 6.0 1/min")});
}

void TestValuesWriting::forgetsWritesOfRowsThatAreGone()
{
    openAndRead(kPatienceMs);
    QVERIFY(write(0, "5"));
    m_plant->tags().setTags(TagSet());
    QTRY_COMPARE_WITH_TIMEOUT(m_plant->word(1000), 50, kPatienceMs);
    m_plant->line().close();
    QCOMPARE(m_model->rowCount(), 0);
}

void TestValuesWriting::writesABitOfAWord()
{
    m_plant->tags().setTags(m_plant->read("name,register,address,type,access\n"
                                          "door,M_W,200,bit3,read-write\n"
                                          "word,C_W,100,bit3,read-write\n"));
    m_plant->open(kPatienceMs);
    QTRY_VERIFY_WITH_TIMEOUT(m_plant->tags().quality(1) == Quality::Good, kPatienceMs);
    QVERIFY(write(0, "true"));
    QTRY_COMPARE_WITH_TIMEOUT(stage(0), WriteStage::Taken, kPatienceMs);
    QCOMPARE(m_plant->plc().station.memory().bit('M', 200, 3).value_or(false), true);
    QVERIFY(write(1, "true")); // the PLC has no register for its bits
    QCOMPARE(stage(1), WriteStage::NotSent);
}

QTEST_MAIN(TestValuesWriting)
#include "test_values_writing.moc"
