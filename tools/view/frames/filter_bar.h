#pragma once

#include "view/frames/trace/frame_filter.h"

#include <QCheckBox>
#include <QComboBox>
#include <QJsonObject>
#include <QLineEdit>
#include <QTimer>
#include <QWidget>

namespace cnet::view {

/** Where people say which frames they want to see. */
class FilterBar : public QWidget
{
    Q_OBJECT

public:
    explicit FilterBar(QWidget *parent = nullptr);

    FrameQuery query() const;
    void setQuery(const FrameQuery &query);

    QJsonObject saved() const;
    /** What is not understood is left as it is. */
    void restore(const QJsonObject &object);

    /** For the keyboard's way to the text. */
    QLineEdit &text() const { return *m_text; }

Q_SIGNALS:
    /** query() is another one; while somebody types, once they pause. */
    void queryChanged();

private:
    void addStations();
    void addKinds();

    QComboBox *m_station;
    QComboBox *m_kind;
    QCheckBox *m_faults;
    QLineEdit *m_text;
    QTimer m_typing;
};

} // namespace cnet::view
