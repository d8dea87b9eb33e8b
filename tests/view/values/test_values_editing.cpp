#include "shown_values.h"
#include "view/values/table/value_editor.h"

#include "support/rows.h"

#include <QLabel>

using namespace cnet;
using namespace cnet::view;

/** Changing values in the table: what is checked while one types, and what writes. */
class TestValuesEditing : public QObject, private ShownValues
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { close(); }

    void writesOnEnter();
    void saysWhatIsWrongWhileOneTypes();
    void writesNothingButOnEnter_data();
    void writesNothingButOnEnter();
    void keepsWhatIsTypedWhenTheValueChanges();
    void editsTheValueWhereverItIsTouched();
    void tellsThatAValueCanOnlyBeRead();
    void choosesTruthsAndNames();
    void takesOneFromAnOpenList();
    void survivesTagsThatGo();
    void stopsFading();

private:
    static const Given<Qt::Key> kWaysOut[];

    template <typename Editor>
    Editor *editor() const
    {
        const auto editors = view()->viewport()->findChildren<Editor *>();
        for (Editor *const one : editors) {
            if (one->isVisible()) {
                return one;
            }
        }
        return nullptr;
    }
    /// Opens the editor of a row.
    template <typename Editor>
    Editor *edit(int row)
    {
        view()->setCurrentIndex(view()->model()->index(row, 0));
        view()->setFocus();
        QTest::keyClick(view(), Qt::Key_F2);
        return editor<Editor>();
    }
    QString note(int row) const
    {
        return view()->model()->index(row, static_cast<int>(ValueColumn::Write)).data().toString();
    }
    void openAndRead(int intervalMs = kPatienceMs)
    {
        m_plant->open(intervalMs);
        QTRY_VERIFY_WITH_TIMEOUT(m_plant->isRead(), kPatienceMs);
    }
};

void TestValuesEditing::init()
{
    QVERIFY(show());
    m_page->setTags(m_plant->read(kTags));
}

void TestValuesEditing::writesOnEnter()
{
    openAndRead();
    auto *const field = edit<ValueEditor>(0);
    QVERIFY(field != nullptr);
    QCOMPARE(field->text(), latin("0.0")); // without its unit
    QCOMPARE(field->selectedText(), field->text());
    QVERIFY(field->accessibleName().contains(latin("oil.speed")));
    QTest::keyClicks(field, latin("12.5"));
    QTest::keyClick(field, Qt::Key_Return);
    QTRY_COMPARE_WITH_TIMEOUT(note(0), latin("taken, reads 12.5 1/min"), kPatienceMs);
    QCOMPARE(m_plant->word(1000), 125);
    QTRY_VERIFY_WITH_TIMEOUT(editor<ValueEditor>() == nullptr, kPatienceMs);
}

void TestValuesEditing::saysWhatIsWrongWhileOneTypes()
{
    openAndRead();
    auto *const field = edit<ValueEditor>(0);
    QVERIFY(field != nullptr);
    const QColor usual = field->palette().color(QPalette::Base);
    QVERIFY(field->reason().isEmpty());
    QTest::keyClicks(field, latin("200"));
    QVERIFY2(field->reason().contains(latin("120")), qPrintable(field->reason()));
    QCOMPARE(field->accessibleDescription(), field->reason());
    QVERIFY(field->palette().color(QPalette::Base) != usual);
    QLabel *reason = nullptr;
    const auto labels = view()->viewport()->findChildren<QLabel *>();
    for (QLabel *const label : labels) {
        reason = label->isVisible() ? label : reason;
    }
    QVERIFY(reason != nullptr);
    QCOMPARE(reason->text(), field->reason());
    QVERIFY(view()->viewport()->rect().contains(reason->geometry()));
    QVERIFY(!reason->geometry().intersects(field->geometry()));
    QTest::keyClick(field, Qt::Key_Return); // neither closes nor writes
    QCOMPARE(editor<ValueEditor>(), field);
    QCOMPARE(note(0), QString());
    QTest::keyClick(field, Qt::Key_Backspace);
    QVERIFY(field->reason().isEmpty());
    QVERIFY(!reason->isVisible());
    QTest::keyClick(field, Qt::Key_Return);
    QTRY_COMPARE_WITH_TIMEOUT(m_plant->word(1000), 200, kPatienceMs);
}

const Given<Qt::Key> TestValuesEditing::kWaysOut[] = {
    {"escape", Qt::Key_Escape},
    {"tab", Qt::Key_Tab},
    {"another place", Qt::Key_unknown},
};

void TestValuesEditing::writesNothingButOnEnter_data()
{
    addRows(kWaysOut);
}

void TestValuesEditing::writesNothingButOnEnter()
{
    openAndRead();
    auto *const field = edit<ValueEditor>(0);
    QVERIFY(field != nullptr);
    QTest::keyClicks(field, latin("7"));
    const Qt::Key key = currentRow(kWaysOut).given;
    if (key == Qt::Key_unknown) {
        view()->setCurrentIndex(view()->model()->index(2, 0));
        m_page->findChild<QLineEdit *>()->setFocus();
    } else {
        QTest::keyClick(field, key);
    }
    QTRY_VERIFY_WITH_TIMEOUT(editor<ValueEditor>() == nullptr, kPatienceMs);
    QCOMPARE(note(0), QString());
    QCOMPARE(m_plant->word(1000), 0);
}

void TestValuesEditing::keepsWhatIsTypedWhenTheValueChanges()
{
    openAndRead(1);
    auto *const field = edit<ValueEditor>(0);
    QVERIFY(field != nullptr);
    QTest::keyClicks(field, latin("3"));
    m_plant->setWord(1000, 777);
    const QModelIndex value = view()->model()->index(0, static_cast<int>(ValueColumn::Value));
    QSignalSpy told(view()->model(), &QAbstractItemModel::dataChanged);
    QTRY_COMPARE_WITH_TIMEOUT(value.data().toString(), latin("77.7 1/min"), kPatienceMs);
    QTRY_VERIFY_WITH_TIMEOUT(told.count() > 0, kPatienceMs);
    QCOMPARE(field->text(), latin("3"));
}

void TestValuesEditing::editsTheValueWhereverItIsTouched()
{
    openAndRead();
    const QModelIndex name = view()->model()->index(0, 0);
    const QPoint place = view()->visualRect(name).center();
    QTest::mouseClick(view()->viewport(), Qt::LeftButton, {}, place);
    QTest::mouseDClick(view()->viewport(), Qt::LeftButton, {}, place);
    auto *const field = editor<ValueEditor>();
    QVERIFY(field != nullptr);
    QVERIFY(view()
                ->visualRect(view()->model()->index(0, static_cast<int>(ValueColumn::Value)))
                .contains(field->geometry().center()));
}

void TestValuesEditing::tellsThatAValueCanOnlyBeRead()
{
    openAndRead();
    QSignalSpy told(m_page.get(), &Page::told);
    QVERIFY(edit<ValueEditor>(1) == nullptr);
    QCOMPARE(told.count(), 1);
    QCOMPARE(told.at(0).at(0).toString(), latin("oil.level can only be read"));
}

void TestValuesEditing::choosesTruthsAndNames()
{
    openAndRead();
    auto *const lamp = edit<ChoiceEditor>(15);
    QVERIFY(lamp != nullptr);
    QCOMPARE(lamp->count(), 2);
    QCOMPARE(lamp->currentText(), latin("false"));
    QTest::keyClick(lamp, Qt::Key_Down); // not decided yet
    QCOMPARE(lamp->currentText(), latin("true"));
    QCOMPARE(note(15), QString());
    QTest::keyClick(lamp, Qt::Key_Return);
    QTRY_COMPARE_WITH_TIMEOUT(note(15), latin("taken, reads true"), kPatienceMs);
    auto *const mode = edit<ChoiceEditor>(2);
    QVERIFY(mode != nullptr);
    QCOMPARE(mode->count(), 3);
    mode->setCurrentIndex(2);
    QTest::keyClick(mode, Qt::Key_Enter);
    QTRY_COMPARE_WITH_TIMEOUT(note(2), latin("taken, reads fast"), kPatienceMs);
    QCOMPARE(m_plant->word(1002), 2);
}

void TestValuesEditing::takesOneFromAnOpenList()
{
    openAndRead();
    auto *const mode = edit<ChoiceEditor>(2);
    QVERIFY(mode != nullptr);
    mode->showPopup();
    QTest::keyClick(mode->view(), Qt::Key_Down);
    QTest::keyClick(mode->view(), Qt::Key_Return);
    QTest::keyClick(mode, Qt::Key_Return);
    QTRY_COMPARE_WITH_TIMEOUT(note(2), latin("taken, reads slow"), kPatienceMs);
}

void TestValuesEditing::survivesTagsThatGo()
{
    openAndRead();
    QVERIFY(edit<ValueEditor>(0) != nullptr);
    m_page->setTags(TagSet());
    QTRY_VERIFY_WITH_TIMEOUT(editor<ValueEditor>() == nullptr, kPatienceMs);
    QCOMPARE(view()->model()->rowCount(), 0);
    // Nor does the end of the page while one edits disturb anything.
    m_page->setTags(m_plant->read(kTags));
    QVERIFY(edit<ValueEditor>(0) != nullptr);
    m_page.reset();
    m_plant->line().close();
    QCOMPARE(m_plant->tags().tags().all().size(), 6);
}

void TestValuesEditing::stopsFading()
{
    openAndRead(1);
    QVERIFY(!view()->isFading());
    bool hasFaded = false;
    connect(m_page->findChild<ValuesModel *>(), &ValuesModel::freshened, this,
            [&] { hasFaded = hasFaded || view()->isFading(); });
    quint16 word = 44; // a slow machine may see one when it has faded
    QTRY_VERIFY_WITH_TIMEOUT((m_plant->setWord(1001, ++word), hasFaded), kPatienceMs);
    QTRY_VERIFY_WITH_TIMEOUT(!view()->isFading(), kPatienceMs);
}

QTEST_MAIN(TestValuesEditing)
#include "test_values_editing.moc"
