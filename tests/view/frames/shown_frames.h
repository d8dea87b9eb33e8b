#pragma once

#include "view/frames/frames_page.h"

#include "frames_made.h"

#include "view/support/shown.h"

#include <QTemporaryDir>

#include <memory>

namespace cnet::view {

/** The page of frames in a window, and a folder for its files. */
class ShownFrames
{
protected:
    bool show()
    {
        m_line = std::make_unique<Line>();
        m_page = std::make_unique<FramesPage>(*m_line);
        return showActive(*m_page, {900, 600});
    }
    void close()
    {
        m_page.reset();
        m_line.reset();
    }

    void exchange(const QByteArray &request, const QByteArray &answer,
                  Outcome outcome = Outcome::Answered)
    {
        m_page->recorder().noteRequest(request);
        m_page->recorder().noteEnd(report(request, answer, outcome));
    }
    void exchanges(int count)
    {
        for (int i = 0; i < count; ++i) {
            exchange(readRequest(), readAnswer());
        }
        m_page->recorder().flush();
    }
    void select(int row) { table().setCurrentIndex(table().model()->index(row, 0)); }
    FrameTable &table() const { return m_page->table(); }
    QString path(const char *name) const { return m_folder.filePath(QLatin1String(name)); }

    QTemporaryDir m_folder;
    std::unique_ptr<Line> m_line;
    std::unique_ptr<FramesPage> m_page;
};

} // namespace cnet::view
