#pragma once

#include "view/connect/connection.h"

#include <QVector>
#include <QWidget>

class QComboBox;
class QFormLayout;
class QLabel;
class QLineEdit;
class QSpinBox;

namespace cnet::view {

/** The fields of a connection, with what is wrong in them beside. */
class LinkForm : public QWidget
{
    Q_OBJECT

public:
    explicit LinkForm(QWidget *parent = nullptr);

    /** What the fields say. @return empty while problem() is not */
    std::optional<Connection> connection() const;
    void setConnection(const Connection &connection);

    /** What is wrong in words; empty: nothing. */
    QString problem() const;

Q_SIGNALS:
    void edited();
    /** Enter was pressed in one of the fields. */
    void entered();

protected:
    void showEvent(QShowEvent *event) override;

private:
    /** A row that only some kinds have. */
    struct Row
    {
        QLabel *label; ///< none: the field goes over both columns
        QWidget *field;
    };

    void addOptional(QFormLayout &form, const QString &text, QWidget *field);
    bool isWanted(const QWidget *field) const;
    void addKind(QFormLayout &form);
    void addTcp(QFormLayout &form);
    void addSerial(QFormLayout &form);
    void addPolling(QFormLayout &form);
    void watch();
    void listPorts();
    void showKind();
    void look();
    Connection::Kind kind() const;
    Connection fields() const;

    QVector<Row> m_rows;
    QComboBox *m_kind;
    QLineEdit *m_host;
    QSpinBox *m_port;
    QComboBox *m_device;
    QLabel *m_behind; ///< what line is meant where the program itself has none
    QComboBox *m_baud;
    QComboBox *m_dataBits;
    QComboBox *m_parity;
    QComboBox *m_stopBits;
    QSpinBox *m_station;
    QSpinBox *m_interval;
    QSpinBox *m_timeout;
    QLabel *m_problem;
};

} // namespace cnet::view
