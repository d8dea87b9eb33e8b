#include "view/simulator/motion_form.h"

#include "view/simulator/tone_label.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include <algorithm>

namespace cnet::view {

namespace {

class Words
{
    Q_DECLARE_TR_FUNCTIONS(MotionWords)
};

QString meaningOf(plc::MotionKind kind)
{
    switch (kind) {
    case plc::MotionKind::Ramp:
        return Words::tr("Up from the lowest to the highest value by 1 each time, then from the "
                         "lowest again.");
    case plc::MotionKind::Sine:
        return Words::tr("To and fro between the two values, smoothly; the time is that of a full "
                         "turn.");
    case plc::MotionKind::Square:
        return Words::tr("The lowest and the highest value in turn, each for the time.");
    case plc::MotionKind::Walk:
        return Words::tr("At random between the two values, a small step each time.");
    case plc::MotionKind::Counter:
        return Words::tr("A count of 32 bits in two words, the lower half first.");
    }
    return QString();
}

QLineEdit *makeEdit(const QString &name)
{
    auto *edit = new QLineEdit;
    edit->setAccessibleName(name);
    return edit;
}

} // namespace

QString motionName(plc::MotionKind kind)
{
    switch (kind) {
    case plc::MotionKind::Ramp:
        return Words::tr("Ramp");
    case plc::MotionKind::Sine:
        return Words::tr("Sine");
    case plc::MotionKind::Square:
        return Words::tr("Square");
    case plc::MotionKind::Walk:
        return Words::tr("Random walk");
    case plc::MotionKind::Counter:
        return Words::tr("Counter");
    }
    return QString();
}

MotionForm::MotionForm(Simulator &simulator, QWidget *parent)
    : QGroupBox(tr("Let values move"), parent)
    , m_simulator(simulator)
    , m_kind(new QComboBox)
    , m_meaning(new QLabel)
    , m_register(new QComboBox)
    , m_addresses(makeEdit(tr("Addresses that move")))
    , m_low(makeEdit(tr("Lowest value")))
    , m_high(makeEdit(tr("Highest value")))
    , m_increment(makeEdit(tr("Step of the counter")))
    , m_ms(makeEdit(tr("Milliseconds of a step or turn")))
    , m_outcome(new QLabel)
    , m_start(new QPushButton(tr("Let &it move")))
{
    for (const plc::MotionKindText &each : plc::motionKindTexts()) {
        m_kind->addItem(motionName(each.kind));
    }
    m_kind->setAccessibleName(tr("Kind of motion"));
    m_register->addItems(simulatorRegisters());
    m_register->setAccessibleName(tr("Register that moves"));
    m_addresses->setText(QLatin1String("500"));
    m_addresses->setToolTip(tr("One address, or several as 500-519; of bits as 3.5-3.9"));
    m_meaning->setWordWrap(true);
    m_outcome->setWordWrap(true);
    m_outcome->setAccessibleName(tr("What became of the motion"));
    makeRows(new QFormLayout(this));
    connect(m_kind, &QComboBox::currentTextChanged, this, &MotionForm::showKind);
    connect(m_register, &QComboBox::currentTextChanged, this, &MotionForm::check);
    for (QLineEdit *edit : {m_addresses, m_low, m_high, m_increment, m_ms}) {
        connect(edit, &QLineEdit::textChanged, this, &MotionForm::check);
        connect(edit, &QLineEdit::returnPressed, this, &MotionForm::start);
    }
    connect(m_start, &QPushButton::clicked, this, &MotionForm::start);
    showKind();
}

void MotionForm::makeRows(QFormLayout *form)
{
    const auto addRow = [form](const QString &name, QWidget *buddy,
                               std::initializer_list<QWidget *> widgets) {
        auto *row = new QHBoxLayout;
        for (QWidget *widget : widgets) {
            row->addWidget(widget, qobject_cast<QLineEdit *>(widget) != nullptr ? 1 : 0);
        }
        auto *label = new QLabel(name);
        label->setBuddy(buddy);
        form->addRow(label, row);
    };
    addRow(tr("&Kind:"), m_kind, {m_kind});
    form->addRow(m_meaning);
    addRow(tr("Add&resses:"), m_addresses, {m_register, m_addresses});
    addRow(tr("Fro&m:"), m_low, {m_low, new QLabel(tr("to")), m_high});
    addRow(tr("Ever&y:"), m_ms, {m_ms, new QLabel(tr("ms, by")), m_increment, m_start});
    form->addRow(m_outcome);
}

plc::MotionKind MotionForm::kind() const
{
    const auto index = static_cast<std::size_t>(std::max(m_kind->currentIndex(), 0));
    return plc::motionKindTexts().at(index).kind;
}

// What is left empty is as usual; of two ends one alone says too little for the parser.
QString MotionForm::text() const
{
    QString text = m_register->currentText() + QLatin1Char(':') + m_addresses->text().simplified();
    const QString low = m_low->text().trimmed();
    const QString high = m_high->text().trimmed();
    if (!low.isEmpty() || !high.isEmpty()) {
        text +=
            QString::fromLatin1("=%1..%2").arg(low.isEmpty() ? m_low->placeholderText() : low,
                                               high.isEmpty() ? m_high->placeholderText() : high);
    }
    const QString increment = m_increment->text().trimmed();
    if (kind() == plc::MotionKind::Counter && !increment.isEmpty()) {
        text += QLatin1Char('+') + increment;
    }
    const QString ms = m_ms->text().trimmed();
    return ms.isEmpty() ? text : text + QLatin1Char('@') + ms;
}

void MotionForm::showKind()
{
    const bool counts = kind() == plc::MotionKind::Counter;
    m_meaning->setText(meaningOf(kind()));
    m_increment->setEnabled(counts);
    m_increment->setPlaceholderText(QLatin1String("1"));
    m_ms->setPlaceholderText(QLatin1String(kind() == plc::MotionKind::Sine ? "60000" : "1000"));
    check();
}

void MotionForm::check()
{
    const bool isWord = m_register->currentText().endsWith(QLatin1String("_W"));
    m_low->setPlaceholderText(QLatin1String("0"));
    m_high->setPlaceholderText(QLatin1String(kind() == plc::MotionKind::Counter ? "4294967295"
                                             : isWord                           ? "9999"
                                                                                : "1"));
    const auto parsed = plc::parseMotion(kind(), text());
    const auto *error = std::get_if<plc::TextError>(&parsed);
    say(m_outcome, error != nullptr ? error->message : QString(), Tone::Bad);
    m_start->setEnabled(error == nullptr);
}

void MotionForm::start()
{
    if (!m_start->isEnabled()) {
        return;
    }
    const QString error = m_simulator.move(m_station, kind(), text());
    if (!error.isEmpty()) {
        say(m_outcome, error, Tone::Bad);
        return;
    }
    say(m_outcome,
        tr("%1 moves.").arg(m_register->currentText() + QLatin1Char(':') + m_addresses->text()),
        Tone::Good);
    Q_EMIT told(m_outcome->text());
}

} // namespace cnet::view
