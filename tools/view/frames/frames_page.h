#pragma once

#include "view/connect/line.h"
#include "view/frames/capture_bar.h"
#include "view/frames/detail/frame_detail.h"
#include "view/frames/filter_bar.h"
#include "view/frames/frame_table.h"
#include "view/frames/trace/capture_file.h"
#include "view/frames/trace/line_recorder.h"
#include "view/look/page.h"

#include "host/recording/recording.h"

#include <QAction>
#include <QSaveFile>
#include <QTimer>

namespace cnet::view {

/** The frames of the line as they come, or those of a file, and what each byte of them means. */
class FramesPage : public Page
{
    Q_OBJECT

public:
    /** @param line must outlive the page */
    explicit FramesPage(Line &line, QWidget *parent = nullptr);
    ~FramesPage() override;

    QString title() const override;
    /** The filter, and the widths of the columns. */
    QJsonObject saved() const override;
    void restore(const QJsonObject &state) override;

    /**
     * Writes what the table has, whatever the filter hides, as pcapng. Many frames take a while,
     * in which the window goes on; told() says when they are saved.
     * @return false: it failed at once. Whenever it fails, troubled() says why, and a file that
     * was there stays as it was.
     */
    bool saveCapture(const QString &path);

    /**
     * Shows a pcapng file in place of the line, which goes on being recorded.
     * @return false: troubled() says why, and what was shown is shown still
     */
    bool openCapture(const QString &path);

    /** Back from a file to the line. */
    void showLive();
    bool isLive() const { return m_filter.frames() == &m_live; }

    /** Holds the table; see LineRecorder. */
    void setPaused(bool paused);

    // The parts, for whoever arranges or reads them.

    FrameTable &table() const { return *m_table; }
    FilterBar &filterBar() const { return *m_filterBar; }
    FrameDetail &detail() const { return *m_detail; }
    CaptureBar &captureBar() const { return *m_captureBar; }
    LineRecorder &recorder() { return m_recorder; }
    FrameModel &shown() const { return *m_filter.frames(); }
    QString statusText() const { return m_status->text(); }

protected:
    void changeEvent(QEvent *event) override;

private:
    QAction *makeAction(const QString &text, const QString &hint, const QKeySequence &keys);
    void makeActions();
    void arrange();
    void wire();
    void choose(FrameModel &model);
    void showLine(int line);
    void showFrame();
    void showPartner();
    void showStatus();
    void clearFrames();
    void copySelected();
    bool saveMore();
    bool finishSaving(bool isSaved);
    void endSaving();
    void askWhereToSave();
    void askWhatToOpen();
    QString headline(const FrameRow &row, qint64 number) const;

    /** A capture on its way into a file. */
    struct Saving
    {
        Saving(const QString &path, const FrameLog &log, const QString &lineName, int waiting);

        QSaveFile file;
        int frames;
        int waiting; ///< exchanges that the table had not seen when it began
        CaptureMaker maker;
    };

    FrameModel m_live;
    FrameModel m_opened;
    LineRecorder m_recorder;
    FrameFilter m_filter;
    Recording m_recording;            ///< that m_opened is of
    QString m_folder;                 ///< of the last file
    std::unique_ptr<Saving> m_saving; ///< null: nothing is being saved
    QTimer m_saveTurn;

    QAction *m_pause = nullptr;
    QAction *m_follow = nullptr;
    QAction *m_clear = nullptr;
    QAction *m_copy = nullptr;
    QAction *m_partner = nullptr;
    QAction *m_find = nullptr;
    QAction *m_save = nullptr;
    QAction *m_open = nullptr;
    QAction *m_back = nullptr;
    CaptureBar *m_captureBar = nullptr;
    FilterBar *m_filterBar = nullptr;
    FrameTable *m_table = nullptr;
    FrameDetail *m_detail = nullptr;
    QLabel *m_status = nullptr;
};

} // namespace cnet::view
