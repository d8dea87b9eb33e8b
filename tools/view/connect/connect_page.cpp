#include "view/connect/connect_page.h"

#include "view/look/colours.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace cnet::view {

namespace {

constexpr int kFormCharacters = 60; // across

QLabel *makeWords(const QString &name)
{
    auto *label = new QLabel;
    label->setWordWrap(true);
    label->setTextFormat(Qt::PlainText);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    label->setAccessibleName(name);
    return label;
}

} // namespace

ConnectPage::ConnectPage(Line &line, QWidget *parent)
    : Page(parent)
    , m_line(line)
    , m_form(new LinkForm)
    , m_result(makeWords(tr("What the test found")))
    , m_state(makeWords(tr("State of the connection")))
    , m_next(makeWords(tr("What to do now")))
{
    auto *left = new QVBoxLayout;
    left->addWidget(m_form);
    left->addWidget(makeButtons());
    left->addWidget(m_result);
    left->addWidget(m_state);
    left->addWidget(m_next);
    left->addStretch(1);
    m_form->setMaximumWidth(fontMetrics().averageCharWidth() * kFormCharacters);
    auto *row = new QHBoxLayout(this);
    row->addLayout(left, 2);
    row->addWidget(makeRecent(), 1);
    setFocusProxy(m_form);
    connect(m_form, &LinkForm::entered, this, &ConnectPage::connectNow);
    connect(m_form, &LinkForm::edited, this, &ConnectPage::showState);
    connect(m_form, &LinkForm::edited, this, &ConnectPage::changed);
    connect(&line, &Line::stateChanged, this, &ConnectPage::showState);
    connect(&m_lineTest, &LineTest::said, m_result, &QLabel::setText);
    connect(&m_lineTest, &LineTest::ended, this, [this](const QString &text, bool found) {
        m_result->setText(found ? text
                                : text + QLatin1Char('\n') +
                                      tr("Check the cable, the station number and the speed that "
                                         "the PLC is set to."));
        m_test->setText(tr("T&est"));
    });
    setRecent({});
    showState();
}

QString ConnectPage::title() const
{
    return tr("&Connect");
}

QJsonObject ConnectPage::saved() const
{
    const auto connection = m_form->connection();
    return connection ? connection->saved() : m_line.connection().saved();
}

void ConnectPage::restore(const QJsonObject &state)
{
    const auto connection = Connection::restored(state);
    if (connection) {
        m_form->setConnection(*connection);
    }
}

void ConnectPage::connectTo(const Connection &connection)
{
    m_form->setConnection(connection);
    if (!m_form->connection()) {
        m_line.close(); // nobody is to take the PLC before it for this one
    }
    connectNow();
}

void ConnectPage::connectNow()
{
    const auto connection = m_form->connection();
    if (!connection) {
        Q_EMIT troubled(tr("Not connected. %1").arg(m_form->problem()), QString());
        return;
    }
    m_lineTest.cancel();
    m_line.open(*connection);
    Q_EMIT connecting(*connection);
}

QWidget *ConnectPage::makeButtons()
{
    m_connect = new QPushButton(tr("Co&nnect"));
    m_disconnect = new QPushButton(tr("Disconnect"));
    m_test = new QPushButton(tr("T&est"));
    m_connect->setDefault(true);
    m_test->setToolTip(tr("Asks which stations answer; nothing is written"));
    auto *buttons = new QWidget;
    auto *row = new QHBoxLayout(buttons);
    row->setContentsMargins(0, 0, 0, 0);
    for (QPushButton *button : {m_connect, m_test, m_disconnect}) {
        row->addWidget(button);
    }
    row->addStretch(1);
    connect(m_connect, &QPushButton::clicked, this, &ConnectPage::connectNow);
    connect(m_disconnect, &QPushButton::clicked, &m_line, &Line::close);
    connect(m_test, &QPushButton::clicked, this, &ConnectPage::test);
    return buttons;
}

QWidget *ConnectPage::makeRecent()
{
    auto *box = new QWidget;
    auto *column = new QVBoxLayout(box);
    column->setContentsMargins(0, 0, 0, 0);
    auto *label = new QLabel(tr("&Latest connections:"));
    m_list = new QListWidget;
    m_list->setAccessibleName(tr("Latest connections"));
    m_list->setToolTip(tr("Double click or Enter connects"));
    label->setBuddy(m_list);
    column->addWidget(label);
    column->addWidget(m_list, 1);
    connect(m_list, &QListWidget::itemActivated, this, &ConnectPage::choose);
    return box;
}

bool ConnectPage::isLineInUse() const
{
    return m_line.session() != nullptr || m_line.isLent();
}

void ConnectPage::test()
{
    if (m_lineTest.isRunning()) {
        m_lineTest.cancel();
        return;
    }
    const auto connection = m_form->connection();
    if (!connection) {
        return;
    }
    // Two programs on one port would take each other's answers.
    if (isLineInUse() && connection->kind == Connection::Kind::Serial &&
        connection->address.device == m_line.connection().address.device) {
        m_result->setText(tr("This port is in use by the window itself. Disconnect first."));
        return;
    }
    m_test->setText(tr("Stop t&est"));
    m_lineTest.start(*connection);
}

void ConnectPage::setRecent(const QVector<Connection> &recent)
{
    m_recent = recent;
    m_list->clear();
    m_list->addItem(Connection().text());
    for (const Connection &connection : recent) {
        m_list->addItem(
            tr("%1, station %2").arg(connection.text(), QString::number(connection.station)));
    }
}

void ConnectPage::choose(const QListWidgetItem *item)
{
    const int row = m_list->row(item) - 1;
    connectTo(row < 0 || row >= m_recent.size() ? Connection() : m_recent.at(row));
}

void ConnectPage::showState()
{
    const bool isGood = m_form->problem().isEmpty();
    m_connect->setEnabled(isGood);
    m_test->setEnabled(isGood || m_lineTest.isRunning());
    m_disconnect->setEnabled(isLineInUse());
    m_next->setText(
        m_line.isOpen()
            ? tr("What the PLC holds is on the Values page (Ctrl+2): type an address there, like "
                 "D_W:100, to add it.")
            : tr("Choose above how the PLC is reached, and press Connect. Test only asks which "
                 "stations answer."));
    const QString state = m_line.stateText();
    m_state->setText(m_line.session() == nullptr
                         ? tr("State: %1").arg(state)
                         : tr("State: %1 (%2)").arg(state, m_line.connection().text()));
}

} // namespace cnet::view
