#pragma once

#include "view/frames/trace/line_recorder.h"

#include "frames_made.h"

#include <QAbstractItemModelTester>

#include <memory>

namespace cnet::view {

/** A table of what is said to go over a line. */
class RecordedTrace
{
protected:
    /** An empty one. Each change of it has each of its cells looked at. */
    void begin(int mostExchanges = FrameModel::kMostExchanges)
    {
        m_recorder.reset();
        m_tester.reset();
        m_model = std::make_unique<FrameModel>(mostExchanges);
        m_line = std::make_unique<Line>();
        m_tester = std::make_unique<QAbstractItemModelTester>(
            m_model.get(), QAbstractItemModelTester::FailureReportingMode::QtTest);
        m_recorder = std::make_unique<LineRecorder>(*m_line, *m_model);
    }
    void ask(const QByteArray &request) { m_recorder->noteRequest(request); }
    void exchange(const QByteArray &request, const QByteArray &answer,
                  Outcome outcome = Outcome::Answered)
    {
        ask(request);
        m_recorder->noteEnd(report(request, answer, outcome));
    }
    /** What goes over a line on which these are watched comes instead. */
    void monitor(const QVector<const char *> &texts)
    {
        Connection fast;
        fast.address.line.baud = 0;
        m_line->open(fast);
        QVector<Item> items;
        QString error;
        for (const char *text : texts) {
            items.append(parseItem(QLatin1String(text), 1, m_line->registers(), error).value());
        }
        m_line->session()->monitor(items);
    }
    const FrameRow &row(int index) const { return m_model->log().at(index); }
    QString text(int row, FrameModel::Column column) const
    {
        return m_model->index(row, column).data().toString();
    }

    std::unique_ptr<Line> m_line;
    std::unique_ptr<FrameModel> m_model;
    std::unique_ptr<QAbstractItemModelTester> m_tester;
    std::unique_ptr<LineRecorder> m_recorder;
};

} // namespace cnet::view
