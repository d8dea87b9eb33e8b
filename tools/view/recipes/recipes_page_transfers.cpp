#include "view/recipes/question_bar.h"
#include "view/recipes/recipes_page.h"

#include <QLabel>
#include <QMap>
#include <QProgressBar>
#include <QTime>

namespace cnet::view {

namespace {

QString doingText(RecipeTransfer::Kind kind)
{
    return kind == RecipeTransfer::Kind::Write ? RecipesPage::tr("Writing to the PLC:")
                                               : RecipesPage::tr("Reading the PLC:");
}

} // namespace

bool RecipesPage::canTransfer(RecipeTransfer::Kind kind)
{
    const Line &line = m_tags.line();
    if (m_model.sheet() == nullptr || m_transfer.isRunning()) {
        Q_EMIT troubled(m_transfer.isRunning() ? tr("A transfer is running already.")
                                               : tr("No recipe is open."),
                        m_transfer.isRunning() ? tr("Cancel it, or wait until it has ended.")
                                               : tr("Open a recipe file first."));
        return false;
    }
    if (!line.isOpen()) {
        Q_EMIT troubled(tr("The PLC cannot be reached: %1").arg(line.stateText()),
                        tr("Connect first, then try again."));
        return false;
    }
    return endEditing() && readdress() && (kind != RecipeTransfer::Kind::Write || canWrite());
}

bool RecipesPage::startTransfer(RecipeTransfer::Kind kind)
{
    if (!canTransfer(kind)) {
        return false;
    }
    Line &line = m_tags.line();
    const auto items = m_model.sheet()->itemsWith(m_model.values());
    m_model.setEditing(RecipeModel::Editing::Locked);
    m_plcOf = plc();
    m_outcome.clear();
    m_isBad = false;
    m_doing->setText(doingText(kind));
    m_bar->setRange(0, 0);
    m_transfer.start(line.session(), kind, items, line.registers());
    refresh();
    return true;
}

void RecipesPage::cancelTransfer()
{
    m_transfer.cancel();
}

// Lines that name no station belong to that of the connection, and that may be another one today.
bool RecipesPage::readdress()
{
    const RecipeSheet *const sheet = m_model.sheet();
    if (sheet == nullptr || sheet->station() == m_tags.line().connection().station) {
        return true;
    }
    QVector<Finding> mistakes;
    const auto other = RecipeSheet::read(sheet->content(), reading(), mistakes);
    if (other && m_model.readdress(*other)) {
        m_model.forgetPlc();
        return true;
    }
    Q_EMIT troubled(tr("The recipe does not fit station %1: %2")
                        .arg(m_tags.line().connection().station)
                        .arg(mistakes.isEmpty() ? QString() : mistakes.first().placed()),
                    tr("Give each line of the file its station, or choose another station for the "
                       "connection."));
    return false;
}

bool RecipesPage::canWrite()
{
    const auto values = m_model.values();
    const auto missing = static_cast<int>(values.indexOf(std::nullopt));
    if (missing >= 0) {
        selectRow(missing);
        Q_EMIT troubled(tr("Nothing was written: %1 has no value.")
                            .arg(m_model.sheet()->rows().at(missing).address),
                        tr("Type the missing values, or take them from the PLC."));
        return false;
    }
    int row = 0;
    for (const RecipeItem &item : m_model.sheet()->items()) {
        QString why;
        if (!m_tags.line().driver().check(item.item, Access::Write, why)) {
            selectRow(row);
            Q_EMIT troubled(tr("Nothing was written: %1").arg(why),
                            tr("Take line %1 out of the file.").arg(item.line));
            return false;
        }
        row += item.item.count;
    }
    return true;
}

void RecipesPage::compare()
{
    startTransfer(RecipeTransfer::Kind::Compare);
}

void RecipesPage::take()
{
    startTransfer(RecipeTransfer::Kind::Take);
}

// A slip of a key is not to write a recipe, nor is it to reach another PLC than people think of.
void RecipesPage::write()
{
    if (!canTransfer(RecipeTransfer::Kind::Write)) {
        return;
    }
    const QString question = writeQuestion();
    m_question->ask(question, {{tr("&No"), {}}, {tr("&Yes, write"), [this, question] {
                                                     if (writeQuestion() == question) {
                                                         startTransfer(RecipeTransfer::Kind::Write);
                                                     } else {
                                                         write();
                                                     }
                                                 }}});
}

QString RecipesPage::writeQuestion() const
{
    QMap<int, QString> stations;
    for (const RecipeItem &item : m_model.sheet()->items()) {
        stations.insert(item.item.station, QString::number(item.item.station));
    }
    const QString numbers = QStringList(stations.values()).join(QLatin1String(", "));
    return tr("Write %n words to %1, %2?", "", static_cast<int>(m_model.values().size()))
        .arg(m_tags.line().connection().text(),
             stations.size() == 1 ? tr("station %1").arg(numbers) : tr("stations %1").arg(numbers));
}

/** Rows that name no station are of the connection's. */
RecipesPage::Plc RecipesPage::plc() const
{
    const Connection &connection = m_tags.line().connection();
    return {connection.text(), connection.station};
}

void RecipesPage::sessionBegan()
{
    // What another PLC has says nothing about this one.
    if (plc() != m_plcOf) {
        m_model.forgetPlc();
        m_outcome.clear();
        m_isBad = false;
    }
    readdress();
    refresh();
}

void RecipesPage::sessionEnds()
{
    m_transfer.leaveSession(tr("the connection was ended"));
}

void RecipesPage::progress(int done, int total)
{
    m_bar->setRange(0, total);
    m_bar->setValue(done);
}

void RecipesPage::end(const TransferOutcome &outcome)
{
    m_model.setEditing(RecipeModel::Editing::Allowed);
    m_plcAt = QTime::currentTime().toString(QLatin1String("HH:mm:ss"));
    m_model.setWords(outcome.words);
    if (m_transfer.kind() == RecipeTransfer::Kind::Write) {
        endWrite(outcome);
    } else {
        endRead(outcome);
    }
    refresh();
}

void RecipesPage::endRead(const TransferOutcome &outcome)
{
    const int known = outcome.count(WordFate::Read);
    const auto all = static_cast<int>(outcome.words.size());
    const bool isTake = m_transfer.kind() == RecipeTransfer::Kind::Take;
    if (known < all) {
        conclude(tr("%1 of %n words were read: %2", "", all).arg(known).arg(outcome.failure),
                 isTake ? tr("No value was taken over. Try again.")
                        : tr("What was read is compared. Try again for the rest."));
        return;
    }
    if (isTake) {
        const int taken = m_model.takeFromPlc();
        conclude(taken == 0 ? tr("The PLC has the values of the recipe: nothing has changed.")
                            : tr("%n values were taken from the PLC.", "", taken));
        return;
    }
    const int different = m_model.counts().different;
    conclude(different == 0 ? tr("The PLC has all values of the recipe.")
                            : tr("%n words differ from the PLC.", "", different));
}

void RecipesPage::endWrite(const TransferOutcome &outcome)
{
    const auto all = static_cast<int>(outcome.words.size());
    const int verified = outcome.count(WordFate::Verified);
    const int mismatches = outcome.count(WordFate::Mismatch);
    const int written = verified + mismatches + outcome.count(WordFate::Written);
    if (outcome.failure.isEmpty() && verified == all) {
        conclude(tr("%n words were written and verified.", "", all));
    } else if (outcome.failure.isEmpty()) {
        conclude(tr("Written, but %n words are not what was written.", "", mismatches),
                 tr("They are marked. Does a program of the PLC write there, too?"));
    } else {
        conclude(tr("The recipe was not written as a whole: %1. %2 of %n words are in the PLC, %3 "
                    "of them verified.",
                    "", all)
                     .arg(outcome.failure, QString::number(written), QString::number(verified)),
                 tr("The PLC may have a part of it. Write it again, or compare to see what it "
                    "has."));
    }
}

void RecipesPage::conclude(const QString &text, const QString &advice)
{
    m_outcome = text;
    m_isBad = !advice.isEmpty();
    if (m_isBad) {
        Q_EMIT troubled(text, advice);
    } else {
        Q_EMIT told(text);
    }
}

} // namespace cnet::view
