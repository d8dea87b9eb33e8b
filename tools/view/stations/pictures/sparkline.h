#pragma once

#include <QVector>
#include <QWidget>

namespace cnet::view {

/** The last values of something that is looked at again and again, as a small line. */
class Sparkline : public QWidget
{
    Q_OBJECT

public:
    static constexpr int kMost = 300; ///< values; what is older is forgotten

    explicit Sparkline(QWidget *parent = nullptr);

    /** @param value 0 or more; not a number: a gap */
    void add(double value);
    void clear();

    /** Oldest first; not a number: a gap. */
    const QVector<double> &values() const { return m_values; }

    /** What the upper edge stands for at least, above 0; more where a value is greater. */
    void setTop(double top);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QVector<double> m_values;
    double m_top = 100;
};

} // namespace cnet::view
