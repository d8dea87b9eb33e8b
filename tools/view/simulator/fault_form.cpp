#include "view/simulator/fault_form.h"

#include "view/look/readable_palette.h"
#include "view/simulator/fault_words.h"
#include "view/simulator/tone_label.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QSignalBlocker>
#include <QSpinBox>

#include <algorithm>

namespace cnet::view {

namespace {

constexpr int kMostTimes = 1000000;
constexpr int kAllPercent = 100;

plc::FaultKind kindAt(int row)
{
    const auto index = static_cast<std::size_t>(std::clamp(row, 0, plc::kFaultKinds - 1));
    return plc::faultKindTexts().at(index).kind;
}

} // namespace

FaultForm::FaultForm(Simulator &simulator, QWidget *parent)
    : QGroupBox(tr("Faults: tick one and see what becomes of the values"), parent)
    , m_simulator(simulator)
    , m_kinds(new QListWidget)
    , m_lesson(new QLabel)
    , m_valueLabel(new QLabel)
    , m_value(new QLineEdit)
    , m_limits(new QLabel)
    , m_percent(new QSpinBox)
    , m_times(new QSpinBox)
    , m_outcome(new QLabel)
{
    makeKinds();
    auto *row = new QHBoxLayout(this);
    row->addWidget(m_kinds);
    row->addLayout(makeChoices(), 1);
    connect(m_kinds, &QListWidget::currentRowChanged, this, &FaultForm::showKind);
    connect(m_kinds, &QListWidget::itemChanged, this, &FaultForm::toggle);
    connect(m_value, &QLineEdit::textEdited, this, [this](const QString &text) {
        m_values.insert(kind(), text);
        change();
    });
    connect(m_percent, qOverload<int>(&QSpinBox::valueChanged), this, &FaultForm::change);
    connect(m_times, qOverload<int>(&QSpinBox::valueChanged), this, &FaultForm::change);
    m_kinds->setCurrentRow(0);
}

void FaultForm::makeKinds()
{
    for (const plc::FaultKindText &each : plc::faultKindTexts()) {
        const FaultWords words = faultWords(each.kind);
        auto *item = new QListWidgetItem(words.name, m_kinds);
        item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
        item->setCheckState(Qt::Unchecked);
        item->setToolTip(words.lesson);
        item->setData(Qt::AccessibleDescriptionRole, words.lesson);
    }
    m_kinds->setAccessibleName(tr("Kinds of faults"));
    m_kinds->setPalette(withVisibleBoxes(m_kinds->palette()));
    m_kinds->setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Expanding);
    m_kinds->setMinimumWidth(m_kinds->sizeHintForColumn(0) + fontMetrics().height() * 2);
}

QLayout *FaultForm::makeChoices()
{
    m_lesson->setWordWrap(true);
    m_lesson->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    m_lesson->setAccessibleName(tr("What the fault teaches"));
    m_lesson->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    m_outcome->setWordWrap(true);
    m_outcome->setAccessibleName(tr("What became of the fault"));
    m_valueLabel->setBuddy(m_value);
    m_percent->setRange(1, kAllPercent);
    m_percent->setValue(kAllPercent);
    m_percent->setSuffix(tr(" % of the requests"));
    m_percent->setAccessibleName(tr("Share of the requests with the fault"));
    m_times->setRange(0, kMostTimes);
    m_times->setSpecialValueText(tr("until it is unticked"));
    m_times->setSuffix(tr(" times"));
    m_times->setAccessibleName(tr("How many times the fault happens"));
    auto *percent = new QLabel(tr("Ha&ppens at:"));
    percent->setBuddy(m_percent);
    auto *times = new QLabel(tr("How &often:"));
    times->setBuddy(m_times);
    auto *grid = new QGridLayout;
    grid->addWidget(m_lesson, 0, 0, 1, 3);
    grid->addWidget(m_valueLabel, 1, 0);
    grid->addWidget(m_value, 1, 1);
    grid->addWidget(m_limits, 1, 2);
    grid->addWidget(percent, 2, 0);
    grid->addWidget(m_percent, 2, 1);
    grid->addWidget(times, 3, 0);
    grid->addWidget(m_times, 3, 1);
    grid->addWidget(m_outcome, 4, 0, 1, 3);
    grid->setRowStretch(0, 1);
    grid->setColumnStretch(2, 1);
    return grid;
}

void FaultForm::setStation(int station)
{
    m_station = station;
    refresh();
}

void FaultForm::refresh()
{
    const QSignalBlocker quiet(m_kinds);
    for (int row = 0; row < m_kinds->count(); ++row) {
        const bool isOn = m_simulator.has(m_station, kindAt(row));
        m_kinds->item(row)->setCheckState(isOn ? Qt::Checked : Qt::Unchecked);
    }
}

plc::FaultKind FaultForm::kind() const
{
    return kindAt(m_kinds->currentRow());
}

QString FaultForm::text(plc::FaultKind kind) const
{
    QString text = plc::faultName(kind);
    const QString value = m_values.value(kind).trimmed();
    if (!value.isEmpty()) {
        text += QLatin1Char('=') + value;
    }
    if (m_times->value() > 0) {
        text += QLatin1Char('*') + QString::number(m_times->value());
    }
    return text + QString::fromLatin1("@%1%").arg(m_percent->value());
}

void FaultForm::showKind()
{
    const FaultWords words = faultWords(kind());
    const auto &texts = plc::faultKindTexts().at(static_cast<std::size_t>(kind()));
    const bool takesValue = !words.valueName.isEmpty();
    m_lesson->setText(words.lesson);
    m_valueLabel->setVisible(takesValue);
    m_value->setVisible(takesValue);
    m_limits->setVisible(takesValue);
    m_valueLabel->setText(tr("%1:").arg(words.valueName));
    m_value->setAccessibleName(words.valueName);
    m_value->setPlaceholderText(QLatin1String(texts.usual));
    m_value->setText(m_values.value(kind()));
    m_limits->setText(faultLimits(kind()));
    check();
}

void FaultForm::check()
{
    const auto parsed = plc::parseFault(text(kind()));
    const auto *error = std::get_if<plc::TextError>(&parsed);
    say(m_outcome, error != nullptr ? error->message : QString(), Tone::Bad);
}

// What is on goes on as it is chosen now.
void FaultForm::change()
{
    check();
    if (m_outcome->text().isEmpty() && m_simulator.has(m_station, kind())) {
        m_simulator.removeFaults(m_station, kind());
        say(m_outcome, m_simulator.cause(m_station, text(kind())), Tone::Bad);
    }
}

void FaultForm::toggle(QListWidgetItem *item)
{
    const int row = m_kinds->row(item);
    const plc::FaultKind kind = kindAt(row);
    const bool wanted = item->checkState() == Qt::Checked;
    if (wanted == m_simulator.has(m_station, kind)) {
        return;
    }
    m_kinds->setCurrentRow(row);
    if (!wanted) {
        m_simulator.removeFaults(m_station, kind);
        Q_EMIT told(tr("%1: off.").arg(faultWords(kind).name));
    } else {
        const QString error = m_simulator.cause(m_station, text(kind));
        say(m_outcome, error, Tone::Bad);
        if (error.isEmpty()) {
            Q_EMIT told(tr("%1: on.").arg(faultWords(kind).name));
        }
    }
    refresh();
}

} // namespace cnet::view
