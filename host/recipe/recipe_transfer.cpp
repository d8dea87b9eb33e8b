#include "host/recipe/recipe_transfer.h"

#include "host/exchange/report_text.h"

namespace cnet {

namespace {

// What the callback gives for a recipe word that was read.
const char kRecipeWordName[] = "RWI";

// More attempts than any setting of the driver allows for one frame.
const int kMostAttempts = 2000;

} // namespace

RecipeTransfer::RecipeTransfer(DriverSession &driver, Exchange &exchange, QObject *parent)
    : QObject(parent)
    , m_driver(driver)
    , m_exchange(exchange)
    , m_area(driver)
{
    connect(&exchange, &Exchange::ended, this, &RecipeTransfer::handleEnded);
}

RecipeTransfer::~RecipeTransfer()
{
    cutOff(QLatin1String("the panel ended"));
}

bool RecipeTransfer::start(const RecipeLayout &layout, RecipeDirection direction)
{
    m_direction = direction;
    m_progress = RecipeProgress();
    m_progress.total = layout.words;
    m_wordsRead.clear();
    m_driver.setChangeHandler(
        [this](int /*station*/, const QString &name, int address) { handleChange(name, address); });
    // A request that is left from before would start a transfer of its own.
    m_area.clearRequests();
    QVector<_RCP_VAR_PRO> items = layout.items;
    // Without a block the driver would send its last job again and again, and the request would
    // stay for ever.
    if (items.isEmpty() || m_driver.functions().setRcpAddress(items) < 1) {
        return false;
    }
    m_running = true;
    m_area.request(direction);
    m_exchange.wake();
    return true;
}

void RecipeTransfer::handleChange(const QString &name, int address)
{
    if (name == QLatin1String(kRecipeWordName)) {
        m_wordsRead.insert(address);
    }
}

void RecipeTransfer::noteFailure(const ExchangeReport &report)
{
    m_progress.failure = QString::fromLatin1("block %1 (%2/%3): %4")
                             .arg(m_progress.blocks + 1)
                             .arg(report.request.stationNo)
                             .arg(report.requestName(), failureText(report));
}

void RecipeTransfer::handleEnded(const ExchangeReport &report)
{
    if (!m_running || !report.isFinal()) {
        return;
    }
    if (report.result == kAnswerGood) {
        ++m_progress.blocks;
        m_progress.words += report.request.count;
        Q_EMIT advanced();
    } else {
        noteFailure(report);
    }
    if (m_area.isRequested(m_direction)) {
        return;
    }
    m_running = false;
    if (m_progress.failure.isEmpty() && m_direction == RecipeDirection::Read &&
        m_wordsRead.size() < m_progress.total) {
        m_progress.failure = QString::fromLatin1("only %1 of %2 words were reported as read")
                                 .arg(m_wordsRead.size())
                                 .arg(m_progress.total);
    }
    Q_EMIT ended();
}

// The driver remembers at which block a transfer was cut off, even when communication starts anew,
// and would begin the next one there. Only a transfer that ends, well or not, makes it begin at the
// first block again. So this one is brought to a bad end: its frame is answered with nothing, which
// reaches no line, until the driver gives it up and withdraws the request.
void RecipeTransfer::cutOff(const QString &reason)
{
    if (!m_running) {
        return;
    }
    m_running = false;
    m_progress.failure = QString::fromLatin1("block %1: %2").arg(m_progress.blocks + 1).arg(reason);
    FRAME_PRO frame{};
    for (int i = 0; i < kMostAttempts && m_area.isRequested(m_direction); ++i) {
        if (m_driver.functions().getSendFrame(frame) == 0) {
            break;
        }
        QByteArray nothing;
        QString requestText;
        m_driver.functions().dealRcvFrame(nothing, requestText);
    }
    m_area.clearRequests();
}

} // namespace cnet
