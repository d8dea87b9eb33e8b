#include "view/stations/numbers/line_load.h"

#include "view/stations/pictures/sparkline.h"

#include <QCoreApplication>
#include <QGridLayout>
#include <QLabel>
#include <QLocale>
#include <QProgressBar>

#include <algorithm>
#include <cmath>
#include <limits>

namespace cnet::view {

namespace {

constexpr double kFull = 100;
constexpr double kPlenty = 30;
constexpr double kBusy = 60;
constexpr double kNearlyFull = 85;
constexpr int kSecondsOfMinute = 60;
// A quiet line behind a TCP port is not drawn as if it were full.
constexpr double kLeastTopBytes = 1000;

class LoadWords
{
    Q_DECLARE_TR_FUNCTIONS(LoadWords)
};

} // namespace

QString loadWords(double percent)
{
    const QString number = QLocale().toString(percent, 'f', percent < 10 ? 1 : 0);
    if (percent < kPlenty) {
        return LoadWords::tr("%1 % busy: plenty of room").arg(number);
    }
    if (percent < kBusy) {
        return LoadWords::tr("%1 % busy: room for more").arg(number);
    }
    if (percent < kNearlyFull) {
        return LoadWords::tr("%1 % busy: little room is left").arg(number);
    }
    return LoadWords::tr("%1 % busy: full; watch less, or less often").arg(number);
}

LineLoad::LineLoad(QWidget *parent)
    : QWidget(parent)
    , m_bar(new QProgressBar)
    , m_words(new QLabel)
    , m_history(new Sparkline)
{
    m_bar->setRange(0, static_cast<int>(kFull));
    m_bar->setTextVisible(false); // the words beside it say it
    m_bar->setAccessibleName(tr("Line load"));
    m_history->setAccessibleName(tr("Line load of the last minutes"));
    m_words->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    m_words->setAccessibleName(tr("Line load in words"));
    auto *grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    auto *title = new QLabel(tr("Line load:"));
    grid->addWidget(title, 0, 0);
    grid->addWidget(m_bar, 0, 1);
    grid->addWidget(m_words, 0, 2);
    grid->addWidget(m_history, 0, 3);
    grid->setColumnStretch(1, 1);
    grid->setColumnStretch(3, 2);
    takeNothing();
    clear();
}

void LineLoad::take(const Statistics &statistics, qint64 nowMs)
{
    const LineTraffic traffic = statistics.line().recent(nowMs);
    const auto percent = statistics.loadPercent(traffic);
    const bool inPercent = percent.has_value();
    if (inPercent != m_inPercent) {
        clear();
        m_inPercent = inPercent;
    }
    const QString bytes =
        tr("%1 bytes a second").arg(QLocale().toString(traffic.bytesPerSecond(), 'f', 0));
    m_bar->setVisible(inPercent);
    m_bar->setValue(static_cast<int>(std::lround(std::clamp(percent.value_or(0), 0.0, kFull))));
    m_words->setText(inPercent
                         ? tr("%1 (%2)").arg(loadWords(*percent), bytes)
                         : tr("%1; how fast the line behind the port is, is not known").arg(bytes));
    m_history->setTop(inPercent ? kFull : kLeastTopBytes);
    m_history->add(percent.value_or(traffic.bytesPerSecond()));
    describeHistory();
}

void LineLoad::takeNothing()
{
    m_bar->setValue(0);
    m_words->setText(tr("the line is not open"));
    m_history->add(std::numeric_limits<double>::quiet_NaN());
    describeHistory();
}

void LineLoad::clear()
{
    m_history->clear();
    describeHistory();
}

QString LineLoad::words() const
{
    return m_words->text();
}

void LineLoad::describeHistory()
{
    double least = std::numeric_limits<double>::max();
    double most = -1;
    for (const double value : m_history->values()) {
        if (!std::isnan(value)) {
            least = std::min(least, value);
            most = std::max(most, value);
        }
    }
    const QLocale locale;
    const int minutes = Sparkline::kMost / kSecondsOfMinute;
    QString text = tr("Nothing in the last %n minutes.", "", minutes);
    if (most >= 0) {
        const QString ends =
            tr("Between %1 and %2")
                .arg(locale.toString(least, 'f', 0), locale.toString(most, 'f', 0));
        text = m_inPercent ? tr("%1 % in the last %n minutes.", "", minutes).arg(ends)
                           : tr("%1 bytes a second in the last %n minutes.", "", minutes).arg(ends);
    }
    m_history->setAccessibleDescription(text);
    m_history->setToolTip(text);
}

} // namespace cnet::view
