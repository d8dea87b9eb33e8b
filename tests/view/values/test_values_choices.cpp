#include "shown_values.h"
#include "view/values/table/value_editor.h"

#include <QAbstractItemView>

using namespace cnet;
using namespace cnet::view;

/** A value that is chosen from a list: looking at the list, and choosing from it, writes nothing.
 */
class TestValuesChoices : public QObject, private ShownValues
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { close(); }

    void writesAChoiceOnEnter();
    void writesNoChoiceThatIsLeft();

private:
    static constexpr int kMode = 2; ///< row of the value

    QString note() const
    {
        return view()
            ->model()
            ->index(kMode, static_cast<int>(ValueColumn::Write))
            .data()
            .toString();
    }

    QPointer<ChoiceEditor> m_editor;
};

void TestValuesChoices::init()
{
    QVERIFY(show());
    m_page->setTags(m_plant->read(kTags));
    m_plant->open(kPatienceMs);
    QTRY_VERIFY_WITH_TIMEOUT(m_plant->isRead(), kPatienceMs);
    view()->setCurrentIndex(view()->model()->index(kMode, 0));
    QTest::keyClick(view(), Qt::Key_F2);
    m_editor = view()->viewport()->findChild<ChoiceEditor *>();
    QVERIFY(m_editor != nullptr);
    m_editor->showPopup();
    QTest::keyClick(m_editor->view(), Qt::Key_Down);
    QTest::keyClick(m_editor->view(), Qt::Key_Return);
    QTRY_VERIFY_WITH_TIMEOUT(!m_editor->view()->isVisible(), kPatienceMs);
}

void TestValuesChoices::writesAChoiceOnEnter()
{
    QCOMPARE(m_editor->currentText(), latin("slow"));
    QCOMPARE(note(), QString());
    QTest::keyClick(m_editor, Qt::Key_Return);
    QTRY_COMPARE_WITH_TIMEOUT(note(), latin("taken, reads slow"), kPatienceMs);
    QCOMPARE(m_plant->word(1002), 1);
}

void TestValuesChoices::writesNoChoiceThatIsLeft()
{
    QTest::keyClick(m_editor, Qt::Key_Escape);
    QTRY_VERIFY_WITH_TIMEOUT(m_editor == nullptr, kPatienceMs);
    QCOMPARE(note(), QString());
    QCOMPARE(m_plant->word(1002), 0);
}

QTEST_MAIN(TestValuesChoices)
#include "test_values_choices.moc"
