#include "view/frames/filter_bar.h"

#include "view/look/readable_palette.h"

#include "view/frames/trace/frame_words.h"

#include <QHBoxLayout>
#include <QJsonValue>
#include <QLabel>
#include <QSignalBlocker>

namespace cnet::view {

namespace {

constexpr int kHighestStation = 31;
constexpr int kTypingMs = 250;

} // namespace

FilterBar::FilterBar(QWidget *parent)
    : QWidget(parent)
    , m_station(new QComboBox)
    , m_kind(new QComboBox)
    , m_faults(new QCheckBox(tr("Faults &only")))
    , m_text(new QLineEdit)
{
    auto *const row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    m_faults->setPalette(withVisibleBoxes(m_faults->palette()));
    const auto add = [row](const QString &label, QWidget *widget, int stretch) {
        auto *const words = new QLabel(label);
        words->setBuddy(widget);
        row->addWidget(words);
        row->addWidget(widget, stretch);
    };
    add(tr("S&tation:"), m_station, 0);
    add(tr("&Kind:"), m_kind, 0);
    row->addWidget(m_faults);
    add(tr("F&ind:"), m_text, 1);
    m_station->setAccessibleName(tr("Station"));
    m_kind->setAccessibleName(tr("Kind of request"));
    m_text->setAccessibleName(tr("Text to find in frames"));
    m_text->setPlaceholderText(tr("words, an address, or bytes like 72 53 42"));
    m_text->setClearButtonEnabled(true);
    addStations();
    addKinds();
    m_typing.setSingleShot(true);
    m_typing.setInterval(kTypingMs);
    connect(m_station, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &FilterBar::queryChanged);
    connect(m_kind, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &FilterBar::queryChanged);
    connect(m_faults, &QCheckBox::toggled, this, &FilterBar::queryChanged);
    connect(m_text, &QLineEdit::textChanged, &m_typing, QOverload<>::of(&QTimer::start));
    connect(&m_typing, &QTimer::timeout, this, &FilterBar::queryChanged);
}

void FilterBar::addStations()
{
    m_station->addItem(tr("all"), -1);
    for (int station = 0; station <= kHighestStation; ++station) {
        m_station->addItem(QString::number(station), station);
    }
}

void FilterBar::addKinds()
{
    m_kind->addItem(tr("all"), -1);
    for (int kind = 0; kind < kFrameKinds; ++kind) {
        m_kind->addItem(kindWords(static_cast<FrameKind>(kind)), kind);
    }
}

FrameQuery FilterBar::query() const
{
    FrameQuery query;
    const int station = m_station->currentData().toInt();
    const int kind = m_kind->currentData().toInt();
    if (station >= 0) {
        query.station = station;
    }
    if (kind >= 0) {
        query.kind = static_cast<FrameKind>(kind);
    }
    query.faultsOnly = m_faults->isChecked();
    query.text = m_text->text().trimmed();
    return query;
}

void FilterBar::setQuery(const FrameQuery &query)
{
    {
        const QSignalBlocker station(m_station);
        const QSignalBlocker kind(m_kind);
        const QSignalBlocker faults(m_faults);
        const QSignalBlocker text(m_text);
        m_station->setCurrentIndex(qMax(0, m_station->findData(query.station.value_or(-1))));
        m_kind->setCurrentIndex(query.kind ? static_cast<int>(*query.kind) + 1 : 0);
        m_faults->setChecked(query.faultsOnly);
        m_text->setText(query.text);
    }
    m_typing.stop();
    Q_EMIT queryChanged();
}

QJsonObject FilterBar::saved() const
{
    const FrameQuery its = query();
    QJsonObject object;
    if (its.station) {
        object.insert(QLatin1String("station"), *its.station);
    }
    if (its.kind) {
        object.insert(QLatin1String("kind"), kindName(*its.kind));
    }
    if (its.faultsOnly) {
        object.insert(QLatin1String("faultsOnly"), true);
    }
    if (!its.text.isEmpty()) {
        object.insert(QLatin1String("text"), its.text);
    }
    return object;
}

void FilterBar::restore(const QJsonObject &object)
{
    FrameQuery query;
    const int station = object.value(QLatin1String("station")).toInt(-1);
    if (station >= 0 && station <= kHighestStation) {
        query.station = station;
    }
    const QString kind = object.value(QLatin1String("kind")).toString();
    for (int i = 0; i < kFrameKinds; ++i) {
        if (kind == kindName(static_cast<FrameKind>(i))) {
            query.kind = static_cast<FrameKind>(i);
        }
    }
    query.faultsOnly = object.value(QLatin1String("faultsOnly")).toBool();
    query.text = object.value(QLatin1String("text")).toString();
    setQuery(query);
}

} // namespace cnet::view
