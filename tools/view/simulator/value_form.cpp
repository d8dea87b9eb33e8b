#include "view/simulator/value_form.h"

#include "view/simulator/tone_label.h"

#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace cnet::view {

ValueForm::ValueForm(Simulator &simulator, QWidget *parent)
    : QGroupBox(tr("Set a value"), parent)
    , m_simulator(simulator)
    , m_register(new QComboBox)
    , m_address(new QLineEdit(QLatin1String("500")))
    , m_value(new QLineEdit)
    , m_now(new QLabel)
    , m_outcome(new QLabel)
    , m_set(new QPushButton(tr("S&et")))
{
    m_register->addItems(simulatorRegisters());
    m_register->setAccessibleName(tr("Register of the value"));
    m_address->setAccessibleName(tr("Address of the value"));
    m_address->setToolTip(tr("A number; of a bit, its word and bit as 3.5"));
    m_value->setPlaceholderText(tr("12, -3 or 0x1234; several with commas"));
    m_now->setAccessibleName(tr("The value now"));
    m_outcome->setWordWrap(true);
    m_outcome->setAccessibleName(tr("What became of setting the value"));
    auto *address = new QHBoxLayout;
    address->addWidget(m_register);
    address->addWidget(m_address, 1);
    address->addWidget(m_now, 1);
    auto *value = new QHBoxLayout;
    value->addWidget(m_value, 1);
    value->addWidget(m_set);
    auto *form = new QFormLayout(this);
    form->addRow(tr("A&ddress:"), address);
    form->addRow(tr("Val&ue:"), value);
    form->addRow(m_outcome);
    if (auto *label = qobject_cast<QLabel *>(form->labelForField(address))) {
        label->setBuddy(m_address);
    }
    if (auto *label = qobject_cast<QLabel *>(form->labelForField(value))) {
        label->setBuddy(m_value);
    }
    m_value->setAccessibleName(tr("Value to set"));
    connect(m_set, &QPushButton::clicked, this, &ValueForm::set);
    connect(m_value, &QLineEdit::returnPressed, this, &ValueForm::set);
    connect(m_value, &QLineEdit::textChanged, this, &ValueForm::check);
    connect(m_address, &QLineEdit::textChanged, this, &ValueForm::check);
    connect(m_register, &QComboBox::currentTextChanged, this, &ValueForm::check);
    check();
}

QString ValueForm::point() const
{
    return m_register->currentText() + QLatin1Char(':') + m_address->text().trimmed();
}

QString ValueForm::text() const
{
    QString values = m_value->text();
    return point() + QLatin1Char('=') + values.remove(QLatin1Char(' '));
}

void ValueForm::setStation(int station)
{
    m_station = station;
    refresh();
}

void ValueForm::refresh()
{
    const auto value = m_simulator.value(m_station, point());
    m_now->setText(value ? tr("is %1").arg(*value) : tr("no such address"));
}

void ValueForm::check()
{
    refresh();
    const auto parsed = plc::parseSetting(text());
    const auto *error = std::get_if<plc::TextError>(&parsed);
    const bool typed = !m_value->text().isEmpty();
    say(m_outcome, typed && error != nullptr ? error->message : QString(), Tone::Bad);
    m_set->setEnabled(typed && error == nullptr);
}

void ValueForm::set()
{
    if (!m_set->isEnabled()) {
        return;
    }
    const QString error = m_simulator.set(m_station, text());
    refresh();
    if (!error.isEmpty()) {
        say(m_outcome, error, Tone::Bad);
        return;
    }
    say(m_outcome, tr("%1 is set.").arg(text()), Tone::Good);
    Q_EMIT told(m_outcome->text());
}

} // namespace cnet::view
