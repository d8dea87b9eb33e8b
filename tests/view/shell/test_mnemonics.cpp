#include "view/shell/windows.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QStandardPaths>
#include <QTabWidget>
#include <QTranslator>
#include <QtTest>

using namespace cnet::view;

namespace {

QStringList textsOf(const QWidget &widget)
{
    QStringList texts;
    if (const auto *button = qobject_cast<const QAbstractButton *>(&widget)) {
        texts << button->text();
    } else if (const auto *label = qobject_cast<const QLabel *>(&widget)) {
        texts << (label->buddy() != nullptr ? label->text() : QString());
    } else if (const auto *box = qobject_cast<const QGroupBox *>(&widget)) {
        texts << box->title();
    } else if (const auto *tabs = qobject_cast<const QTabBar *>(&widget)) {
        for (int i = 0; i < tabs->count(); ++i) {
            texts << tabs->tabText(i);
        }
    } else if (const auto *menus = qobject_cast<const QMenuBar *>(&widget)) {
        for (const QAction *action : menus->actions()) {
            texts << action->text();
        }
    }
    return texts;
}

/** Texts that share a mnemonic, one line for each such key. */
QStringList collisionsOf(const QStringList &texts)
{
    QMap<QString, QStringList> byKey;
    for (const QString &text : texts) {
        const QKeySequence key = QKeySequence::mnemonic(text);
        if (!key.isEmpty()) {
            byKey[key.toString()] << text;
        }
    }
    QStringList collisions;
    for (auto each = byKey.cbegin(); each != byKey.cend(); ++each) {
        if (each.value().size() > 1) {
            collisions << each.key() + QLatin1String(": ") + each.value().join(QLatin1String(", "));
        }
    }
    return collisions;
}

} // namespace

/** Alt and a letter leads to one place. */
class TestMnemonics : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();
    void areUnique_data();
    void areUnique();

private:
    /** Notes what collides among all that is seen now. */
    void check(const QString &where);
    void checkTabs(const QString &where, const QWidget &page);
    void checkMenus();

    QTranslator m_translator;
    MainWindow *m_window = nullptr;
    int m_places = 0;
    QStringList m_collisions;
};

void TestMnemonics::initTestCase()
{
    QStandardPaths::setTestModeEnabled(true);
    QCoreApplication::setApplicationName(QLatin1String("test_view_mnemonics"));
}

void TestMnemonics::cleanup()
{
    QCoreApplication::removeTranslator(&m_translator);
    m_collisions.clear();
    m_places = 0;
}

void TestMnemonics::check(const QString &where)
{
    QCoreApplication::processEvents();
    QStringList texts;
    const auto widgets = m_window->findChildren<QWidget *>();
    for (const QWidget *widget : widgets) {
        if (widget->isVisible() && widget->window() == m_window) {
            texts << textsOf(*widget);
        }
    }
    const QStringList collisions = collisionsOf(texts);
    for (const QString &collision : collisions) {
        m_collisions << where + QLatin1String(": ") + collision;
    }
    ++m_places;
}

void TestMnemonics::checkTabs(const QString &where, const QWidget &page)
{
    auto *tabs = page.findChild<QTabWidget *>();
    for (int i = 0; tabs != nullptr && i < tabs->count(); ++i) {
        tabs->setCurrentIndex(i);
        check(where);
    }
}

void TestMnemonics::checkMenus()
{
    const auto menus = m_window->findChildren<QMenu *>();
    for (const QMenu *menu : menus) {
        QStringList texts;
        for (const QAction *action : menu->actions()) {
            texts << (action->isVisible() ? action->text() : QString());
        }
        const QStringList collisions = collisionsOf(texts);
        for (const QString &collision : collisions) {
            m_collisions << QLatin1String("menu ") + menu->title() + QLatin1String(": ") +
                                collision;
        }
    }
}

void TestMnemonics::areUnique_data()
{
    QTest::addColumn<QString>("language");
    for (const char *language : {"de", "en"}) {
        QTest::newRow(language) << QString::fromLatin1(language);
    }
}

void TestMnemonics::areUnique()
{
    QFETCH(QString, language);
    QTemporaryDir folder;
    const RecentFiles recent(folder.filePath(QLatin1String("recent.json")));
    Windows windows(recent);
    QVERIFY(m_translator.load(QLocale(language), QLatin1String("cnet-view"), QLatin1String("_"),
                              QLatin1String(":/translations")));
    QVERIFY(QCoreApplication::installTranslator(&m_translator));
    m_window = &windows.begin(Start());
    WindowPages &pages = m_window->pages();
    const auto checkPages = [&] {
        for (int i = 0; i < pages.count(); ++i) {
            pages.setCurrentIndex(i);
            check(pages.tabText(i));
            checkTabs(pages.tabText(i), *pages.widget(i));
        }
        pages.setCurrentWidget(&pages.connectPage());
        auto *kind = pages.connectPage().findChild<QComboBox *>();
        for (int i = 0; i < kind->count(); ++i) {
            kind->setCurrentIndex(i);
            check(pages.tabText(0) + QLatin1String(", ") + kind->currentText());
        }
        kind->setCurrentIndex(0);
    };
    checkPages();
    checkMenus();
    // The questions have letters, too.
    Q_EMIT pages.changed();
    m_window->open();
    QCOMPARE(int(m_window->bar().buttons().size()), 2);
    checkPages();
    m_window->close();
    QVERIFY(m_window->isVisible());
    QCOMPARE(int(m_window->bar().buttons().size()), 2);
    checkPages();
    QFile stored(folder.filePath(QLatin1String("press.cnet-view")));
    QCOMPARE(m_window->document().save(stored.fileName()), QString());
    QVERIFY(stored.open(QIODevice::WriteOnly) && stored.write("of another") > 0);
    stored.close();
    m_window->save();
    QCOMPARE(int(m_window->bar().buttons().size()), 2);
    checkPages();
    QVERIFY(m_places > 20);
    QVERIFY2(m_collisions.isEmpty(), qPrintable(m_collisions.join(QLatin1Char('\n'))));
}

QTEST_MAIN(TestMnemonics)
#include "test_mnemonics.moc"
