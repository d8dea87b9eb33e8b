#include "support/rows.h"

#include "view/shell/main_window.h"

#include <QtTest>

#include <QCoreApplication>
#include <QFile>
#include <QLocale>
#include <QRegularExpression>
#include <QTranslator>
#include <QXmlStreamReader>

namespace {

/** A text of a translation file, with all its forms. */
struct Message
{
    QString context;
    QString source;
    bool isPlural = false;
    bool isFinished = true;
    QStringList translations; ///< two of a plural
};

/** The forms of a translation, from behind its start tag to behind its end. */
QStringList readForms(QXmlStreamReader &xml, bool isPlural)
{
    if (!isPlural) {
        return {xml.readElementText()};
    }
    QStringList forms;
    while (xml.readNextStartElement()) {
        forms << xml.readElementText();
    }
    return forms;
}

QVector<Message> messagesOf(const QString &language)
{
    QFile file(QString::fromLatin1(TRANSLATIONS "/cnet-view_%1.ts").arg(language));
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    QXmlStreamReader xml(&file);
    QVector<Message> messages;
    QString context;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement) {
            continue;
        }
        if (xml.name() == QLatin1String("name")) {
            context = xml.readElementText();
        } else if (xml.name() == QLatin1String("message")) {
            Message message;
            message.context = context;
            message.isPlural =
                xml.attributes().value(QLatin1String("numerus")) == QLatin1String("yes");
            messages.append(message);
        } else if (xml.name() == QLatin1String("source")) {
            messages.last().source = xml.readElementText();
        } else if (xml.name() == QLatin1String("translation")) {
            Message &message = messages.last();
            message.isFinished = !xml.attributes().hasAttribute(QLatin1String("type"));
            message.translations = readForms(xml, message.isPlural);
        }
    }
    return xml.hasError() ? QVector<Message>() : messages;
}

/** What is put in for: %1, %L2, %n, and %v and %m of a progress bar; each once, in order. */
QStringList placeholders(const QString &text)
{
    static const QRegularExpression pattern(QLatin1String("%(?:L?\\d{1,2}|n|v|m)"));
    QStringList found;
    auto matches = pattern.globalMatch(text);
    while (matches.hasNext()) {
        found << matches.next().captured();
    }
    found.removeDuplicates();
    found.sort();
    return found;
}

int mnemonics(QString text)
{
    return text.remove(QLatin1String("&&")).count(QLatin1Char('&'));
}

QString blanksAround(const QString &text)
{
    const auto isBlank = [](QChar letter) {
        return letter == QLatin1Char(' ') ? QLatin1Char('_') : QLatin1Char('-');
    };
    return text.isEmpty() ? QString()
                          : QString(isBlank(text.front())) + QString(isBlank(text.back()));
}

bool isFilter(const QString &text)
{
    return text.contains(QLatin1String("(*."));
}

QStringList suffixes(const QString &filter)
{
    static const QRegularExpression pattern(QLatin1String("\\([^)]*\\)"));
    QStringList found;
    auto matches = pattern.globalMatch(filter);
    while (matches.hasNext()) {
        found << matches.next().captured();
    }
    return found;
}

/** Nothing, or what is wrong with a translation. */
QString mistakeOf(const Message &message, const QString &translation)
{
    if (translation.isEmpty()) {
        return QLatin1String("nothing there");
    }
    if (placeholders(translation) != placeholders(message.source)) {
        return QLatin1String("other placeholders");
    }
    if (mnemonics(translation) != mnemonics(message.source)) {
        return QLatin1String("a mnemonic more or less");
    }
    if (blanksAround(translation) != blanksAround(message.source)) {
        return QLatin1String("other blanks around it");
    }
    if (isFilter(message.source) && suffixes(translation) != suffixes(message.source)) {
        return QLatin1String("other files");
    }
    return {};
}

struct Row
{
    const char *what;
    const char *context;
    const char *source;
    const char *german;
};

const Row kRows[] = {
    {"look", "Quality", "stale", "veraltet"},
    {"connect", "cnet::view::ConnectPage", "&Connect", "&Verbinden"},
    {"values", "cnet::view::ValuesModel", "Raw words", "Rohw\u00f6rter"},
    {"trend", "cnet::view::TrendActions", "Record...", "Aufzeichnen..."},
    {"frames", "Frames", "block check wrong", "Blockpr\u00fcfung falsch"},
    {"stations", "cnet::view::StationsPage", "Stations", "Stationen"},
    {"recipes", "cnet::view::RecipeModel", "Recipe", "Rezept"},
    {"simulator", "MotionWords", "Square", "Rechteck"},
    {"project", "ProjectFile", "the file is empty", "die Datei ist leer"},
    {"shell", "cnet::view::MainWindow", "&File", "&Datei"},
};

struct PluralRow
{
    const char *what;
    const char *language;
    int n;
    const char *text;
};

const PluralRow kPluralRows[] = {
    {"none in English", "en", 0, "0 rows were copied."},
    {"one in English", "en", 1, "1 row was copied."},
    {"two in English", "en", 2, "2 rows were copied."},
    {"none in German", "de", 0, "0 Zeilen wurden kopiert."},
    {"one in German", "de", 1, "1 Zeile wurde kopiert."},
    {"two in German", "de", 2, "2 Zeilen wurden kopiert."},
};

/** As main() loads it. */
bool load(QTranslator &translator, const QString &locale)
{
    return translator.load(QLocale(locale), QLatin1String("cnet-view"), QLatin1String("_"),
                           QLatin1String(":/translations"));
}

} // namespace

class TestTranslation : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void loads_data();
    void loads();
    void isGerman_data();
    void isGerman();
    void isWhatTheWindowAsksFor();
    void hasPlurals_data();
    void hasPlurals();
    void fitsTheSources_data();
    void fitsTheSources();
    void isWhole();
};

void TestTranslation::initTestCase()
{
    Q_INIT_RESOURCE(cnet_view_translations);
}

void TestTranslation::loads_data()
{
    QTest::addColumn<QString>("locale");
    for (const char *locale : {"de_DE", "de_AT", "en_US", "en_GB"}) {
        QTest::newRow(locale) << QString::fromLatin1(locale);
    }
}

void TestTranslation::loads()
{
    QFETCH(QString, locale);
    QTranslator translator;
    QVERIFY(load(translator, locale));
}

void TestTranslation::isGerman_data()
{
    addRows(kRows);
}

void TestTranslation::isGerman()
{
    const auto &row = currentRow(kRows);
    QTranslator translator;
    QVERIFY(load(translator, QLatin1String("de_DE")));
    QCOMPARE(translator.translate(row.context, row.source), QString::fromUtf8(row.german));
}

void TestTranslation::isWhatTheWindowAsksFor()
{
    QTranslator translator;
    QVERIFY(load(translator, QLatin1String("de")));
    QVERIFY(QCoreApplication::installTranslator(&translator));
    // A class asks with its namespace.
    QCOMPARE(cnet::view::MainWindow::tr("&Help"), QLatin1String("&Hilfe"));
}

void TestTranslation::hasPlurals_data()
{
    addRows(kPluralRows);
}

void TestTranslation::hasPlurals()
{
    const auto &row = currentRow(kPluralRows);
    QTranslator translator;
    QVERIFY(load(translator, QLatin1String(row.language)));
    QVERIFY(QCoreApplication::installTranslator(&translator));
    QCOMPARE(
        QCoreApplication::translate("cnet::view::StationsPage", "%n rows were copied.", "", row.n),
        QString::fromLatin1(row.text));
}

void TestTranslation::fitsTheSources_data()
{
    QTest::addColumn<QString>("language");
    for (const char *language : {"de", "en"}) {
        QTest::newRow(language) << QString::fromLatin1(language);
    }
}

void TestTranslation::fitsTheSources()
{
    QFETCH(QString, language);
    const QVector<Message> messages = messagesOf(language);
    QVERIFY(messages.size() > 20);
    QStringList mistakes;
    for (const Message &message : messages) {
        const int forms = message.isPlural ? 2 : 1;
        if (!message.isFinished || message.translations.size() != forms) {
            mistakes << message.context + QLatin1String(": unfinished: ") + message.source;
        }
        for (const QString &translation : message.translations) {
            const QString mistake = mistakeOf(message, translation);
            if (!mistake.isEmpty()) {
                mistakes << QString::fromLatin1("%1: %2: %3 -> %4")
                                .arg(message.context, mistake, message.source, translation);
            }
        }
    }
    QVERIFY2(mistakes.isEmpty(), qPrintable(mistakes.join(QLatin1Char('\n'))));
}

void TestTranslation::isWhole()
{
    QTranslator translator;
    QVERIFY(load(translator, QLatin1String("de")));
    const QVector<Message> messages = messagesOf(QLatin1String("de"));
    QVERIFY(messages.size() > 500);
    for (const Message &message : messages) {
        const QString text = translator.translate(message.context.toUtf8().constData(),
                                                  message.source.toUtf8().constData(), nullptr,
                                                  message.isPlural ? 2 : -1);
        QCOMPARE(text, message.translations.last());
    }
}

QTEST_MAIN(TestTranslation)
#include "test_translation.moc"
