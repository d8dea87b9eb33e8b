#include "view/connect/link_form.h"

#include "view/look/colours.h"

#include <QComboBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QSerialPortInfo>
#include <QSpinBox>

namespace cnet::view {

namespace {

constexpr int kUsualPort = 8000;

QSpinBox *makeSpin(int most, int value, const QString &suffix, const QString &name)
{
    auto *spin = new QSpinBox;
    spin->setRange(0, most);
    spin->setValue(value);
    spin->setSuffix(suffix);
    spin->setAccessibleName(name);
    return spin;
}

QComboBox *makeChoice(const QStringList &texts, const QString &chosen)
{
    auto *box = new QComboBox;
    box->addItems(texts);
    box->setCurrentText(chosen);
    return box;
}

} // namespace

LinkForm::LinkForm(QWidget *parent)
    : QWidget(parent)
    , m_problem(new QLabel)
{
    auto *form = new QFormLayout(this);
    form->setContentsMargins(0, 0, 0, 0);
    form->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
    addKind(*form);
    addTcp(*form);
    addSerial(*form);
    addPolling(*form);
    setFocusProxy(m_kind);
    m_problem->setWordWrap(true);
    m_problem->setAccessibleName(tr("What is wrong with the fields"));
    form->addRow(m_problem);
    watch();
    showKind();
    look();
}

void LinkForm::addKind(QFormLayout &form)
{
    m_kind =
        makeChoice({tr("Simulator inside this program"), tr("TCP"), tr("Serial port")}, QString());
    form.addRow(tr("&Over:"), m_kind);
}

void LinkForm::addTcp(QFormLayout &form)
{
    m_host = new QLineEdit;
    m_host->setPlaceholderText(tr("192.168.0.100 or a name"));
    m_port = makeSpin(65535, kUsualPort, QString(), tr("TCP port"));
    addOptional(form, tr("Hos&t:"), m_host);
    addOptional(form, tr("&Port:"), m_port);
}

void LinkForm::addSerial(QFormLayout &form)
{
    m_device = new QComboBox;
    m_device->setEditable(true); // what the system does not list
    m_baud = makeChoice({QLatin1String("1200"), QLatin1String("2400"), QLatin1String("4800"),
                         QLatin1String("9600"), QLatin1String("19200"), QLatin1String("38400"),
                         QLatin1String("57600"), QLatin1String("115200")},
                        QLatin1String("38400"));
    m_dataBits = makeChoice({QLatin1String("8"), QLatin1String("7")}, QLatin1String("8"));
    m_parity = makeChoice({tr("none"), tr("even"), tr("odd")}, tr("none"));
    m_stopBits = makeChoice({QLatin1String("1"), QLatin1String("2")}, QLatin1String("1"));
    addOptional(form, tr("&Device:"), m_device);
    m_behind = new QLabel(tr("The serial line behind that port:"));
    form.addRow(m_behind);
    m_rows.append({nullptr, m_behind});
    addOptional(form, tr("Ba&ud:"), m_baud);
    addOptional(form, tr("Data b&its:"), m_dataBits);
    addOptional(form, tr("Parit&y:"), m_parity);
    addOptional(form, tr("Stop &bits:"), m_stopBits);
    listPorts();
}

void LinkForm::addPolling(QFormLayout &form)
{
    const Connection usual;
    m_station = makeSpin(31, usual.station, QString(), tr("Station"));
    m_interval = makeSpin(60000, usual.intervalMs, tr(" ms"), tr("Read every"));
    m_timeout = makeSpin(60000, usual.timeoutMs, tr(" ms"), tr("Wait for an answer"));
    m_timeout->setSpecialValueText(tr("found out by itself"));
    m_interval->setSpecialValueText(tr("as often as it goes"));
    form.addRow(tr("St&ation:"), m_station);
    form.addRow(tr("&Read every:"), m_interval);
    form.addRow(tr("&Wait for an answer:"), m_timeout);
}

// Once all fields are there: a change of one is looked at together with the others.
void LinkForm::watch()
{
    connect(m_kind, QOverload<int>::of(&QComboBox::currentIndexChanged), this, &LinkForm::showKind);
    connect(m_host, &QLineEdit::textChanged, this, &LinkForm::look);
    connect(m_device, &QComboBox::editTextChanged, this, &LinkForm::look);
    for (const QComboBox *box : {m_kind, m_baud, m_dataBits, m_parity, m_stopBits}) {
        connect(box, QOverload<int>::of(&QComboBox::currentIndexChanged), this, &LinkForm::look);
    }
    for (const QSpinBox *spin : {m_port, m_station, m_interval, m_timeout}) {
        connect(spin, QOverload<int>::of(&QSpinBox::valueChanged), this, &LinkForm::look);
    }
    const auto fields = findChildren<QLineEdit *>(); // those within the other fields, too
    for (const QLineEdit *field : fields) {
        connect(field, &QLineEdit::returnPressed, this, &LinkForm::entered);
    }
}

// Adapters come and go while the program runs.
void LinkForm::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    listPorts();
}

void LinkForm::listPorts()
{
    const QSignalBlocker blocker(m_device);
    const QString chosen = m_device->currentText();
    m_device->clear();
    const auto ports = QSerialPortInfo::availablePorts();
    for (const QSerialPortInfo &port : ports) {
        m_device->addItem(port.systemLocation());
        m_device->setItemData(m_device->count() - 1, port.description(), Qt::ToolTipRole);
    }
    if (!chosen.isEmpty()) {
        m_device->setEditText(chosen);
    }
}

void LinkForm::addOptional(QFormLayout &form, const QString &text, QWidget *field)
{
    auto *label = new QLabel(text);
    label->setBuddy(field);
    form.addRow(label, field);
    m_rows.append({label, field});
}

bool LinkForm::isWanted(const QWidget *field) const
{
    if (field == m_host || field == m_port || field == m_behind) {
        return kind() == Connection::Kind::Tcp;
    }
    return field == m_device ? kind() == Connection::Kind::Serial
                             : kind() != Connection::Kind::Simulator;
}

// What does not belong to the kind is not in the way, and leaves no gap where it was.
void LinkForm::showKind()
{
    auto &form = *static_cast<QFormLayout *>(layout());
    int at = 1;
    for (const Row &row : qAsConst(m_rows)) {
        if (form.indexOf(row.field) >= 0) {
            const auto taken = form.takeRow(row.field);
            delete taken.labelItem; // the place, not the widget
            delete taken.fieldItem;
        }
        const bool isShown = isWanted(row.field);
        row.field->setVisible(isShown);
        if (row.label != nullptr) {
            row.label->setVisible(isShown);
        }
        if (isShown && row.label != nullptr) {
            form.insertRow(at++, row.label, row.field);
        } else if (isShown) {
            form.insertRow(at++, row.field);
        }
    }
}

void LinkForm::look()
{
    QPalette own = palette();
    own.setColor(QPalette::WindowText, toneColour(Tone::Bad, own));
    m_problem->setPalette(own);
    m_problem->setText(problem());
    m_problem->setVisible(!problem().isEmpty());
    Q_EMIT edited();
}

Connection::Kind LinkForm::kind() const
{
    return static_cast<Connection::Kind>(m_kind->currentIndex());
}

Connection LinkForm::fields() const
{
    Connection connection;
    connection.kind = kind();
    LinkAddress &address = connection.address;
    address.kind =
        kind() == Connection::Kind::Serial ? LinkAddress::Kind::Serial : LinkAddress::Kind::Tcp;
    address.host = m_host->text().trimmed();
    address.port = static_cast<quint16>(m_port->value());
    address.device = m_device->currentText().trimmed();
    address.line.baud = m_baud->currentText().toInt();
    address.line.dataBits = m_dataBits->currentText().toInt();
    address.line.parity = static_cast<Parity>(m_parity->currentIndex());
    address.line.stopBits = m_stopBits->currentText().toInt();
    connection.station = m_station->value();
    connection.intervalMs = m_interval->value();
    connection.timeoutMs = m_timeout->value();
    return connection;
}

std::optional<Connection> LinkForm::connection() const
{
    return problem().isEmpty() ? std::optional<Connection>(fields()) : std::nullopt;
}

void LinkForm::setConnection(const Connection &connection)
{
    const LinkAddress &address = connection.address;
    m_kind->setCurrentIndex(static_cast<int>(connection.kind));
    if (connection.kind == Connection::Kind::Tcp) {
        m_host->setText(address.host);
        m_port->setValue(address.port);
    } else if (connection.kind == Connection::Kind::Serial) {
        m_device->setEditText(address.device);
    }
    const QString baud = QString::number(address.line.baud);
    if (m_baud->findText(baud) < 0 && address.line.baud > 0) {
        m_baud->addItem(baud);
    }
    m_baud->setCurrentText(baud);
    m_dataBits->setCurrentText(QString::number(address.line.dataBits));
    m_parity->setCurrentIndex(static_cast<int>(address.line.parity));
    m_stopBits->setCurrentText(QString::number(address.line.stopBits));
    m_station->setValue(connection.station);
    m_interval->setValue(connection.intervalMs);
    m_timeout->setValue(connection.timeoutMs);
}

QString LinkForm::problem() const
{
    const Connection connection = fields();
    if (connection.kind == Connection::Kind::Simulator) {
        return QString();
    }
    // The text is read again for a project: what that refuses would be lost.
    if (connection.kind == Connection::Kind::Tcp && connection.address.host.isEmpty()) {
        return tr("Say where the PLC is: an address or a name.");
    }
    if (connection.kind == Connection::Kind::Serial && connection.address.device.isEmpty()) {
        return tr("Choose the port that the PLC is connected to.");
    }
    QString error;
    return parseLinkAddress(connection.text(), error) ? QString() : error;
}

} // namespace cnet::view
