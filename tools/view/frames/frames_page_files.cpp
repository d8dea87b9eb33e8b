#include "view/frames/frames_page.h"

#include "host/text/whole_file.h"

#include <QElapsedTimer>
#include <QFileDialog>
#include <QFileInfo>
#include <QLocale>

#include <utility>

// What the page does with files.
namespace cnet::view {

namespace {

constexpr int kRowsAtOnce = 256;
// As long as a turn of the event loop may take before anybody notices.
constexpr int kTurnMs = 8;

} // namespace

FramesPage::Saving::Saving(const QString &path, const FrameLog &log, const QString &lineName,
                           int waitingThen)
    : file(path)
    , frames(framesOf(log))
    , waiting(waitingThen)
    , maker(log, lineName)
{}

bool FramesPage::saveCapture(const QString &path)
{
    endSaving();
    const QString name = isLive() ? m_recorder.lineName() : m_captureBar->lines().currentText();
    m_recorder.flush(); // then only a pause holds frames back
    const int waiting = isLive() ? m_recorder.waiting() : 0;
    m_saving = std::make_unique<Saving>(path, shown().log(), name, waiting);
    if (m_saving->frames == 0) {
        m_saving.reset();
        Q_EMIT troubled(tr("There is no frame to save."),
                        waiting > 0 ? tr("End the pause first: frames wait since it began.")
                                    : tr("Connect to a line first."));
        return false;
    }
    if (!m_saving->file.open(QIODevice::WriteOnly)) {
        return finishSaving(false);
    }
    m_saveTurn.start();
    return saveMore(); // few rows are done at once
}

bool FramesPage::saveMore()
{
    QElapsedTimer turn;
    turn.start();
    while (m_saving->maker.take(kRowsAtOnce)) {
        if (turn.elapsed() >= kTurnMs) {
            return true;
        }
    }
    return finishSaving(replaceFile(m_saving->file, m_saving->maker.content()));
}

bool FramesPage::finishSaving(bool isSaved)
{
    m_saveTurn.stop();
    const std::unique_ptr<Saving> saving = std::move(m_saving);
    const QString path = saving->file.fileName();
    if (isSaved) {
        QString done =
            tr("%n frames were saved in %1.", "", saving->frames).arg(QFileInfo(path).fileName());
        if (saving->waiting > 0) {
            done += QLatin1Char(' ') + tr("Those that wait since the pause are not among them.");
        }
        Q_EMIT told(done);
    } else {
        Q_EMIT troubled(
            tr("The frames were not saved: %1: %2").arg(path, saving->file.errorString()),
            tr("Save them in another place. They are still here."));
    }
    return isSaved;
}

void FramesPage::endSaving()
{
    while (m_saving != nullptr) {
        saveMore();
    }
}

bool FramesPage::openCapture(const QString &path)
{
    Recording recording;
    if (isNoFile(path)) {
        recording.error = tr("it is no file");
    } else {
        recording = readRecordingFile(path);
    }
    if (recording.lines.empty()) {
        Q_EMIT troubled(
            tr("The capture cannot be opened: %1").arg(recording.error),
            tr("What is shown stays. Choose a pcapng file with frames of such a line."));
        return false;
    }
    m_recording = std::move(recording);
    QStringList names;
    QStringList remarks = m_recording.remarks;
    for (const RecordedLine &line : m_recording.lines) {
        names << line.name;
        if (line.exchanges.size() > static_cast<std::size_t>(kMostOpened)) {
            remarks << tr("%1: of %2 only the first %3 exchanges are shown")
                           .arg(path, line.name, QLocale().toString(kMostOpened));
        }
    }
    m_captureBar->setFile(path, names);
    m_captureBar->show();
    m_back->setEnabled(true);
    showLine(0);
    if (!remarks.isEmpty()) {
        Q_EMIT troubled(remarks.join(QLatin1Char('\n')), tr("The rest of the file is shown."));
    }
    return true;
}

void FramesPage::showLine(int line)
{
    const auto index = static_cast<std::size_t>(line);
    if (line < 0 || index >= m_recording.lines.size()) {
        return;
    }
    m_opened.show(logOf(m_recording.lines.at(index)));
    m_captureBar->setCount(m_opened.log().exchanges());
    choose(m_opened);
    m_table->setFollows(false);
    m_table->scrollToTop();
}

void FramesPage::showLive()
{
    if (isLive()) {
        return;
    }
    choose(m_live);
    m_captureBar->hide();
    m_back->setEnabled(false);
    m_opened.show(FrameLog());
    m_recording = Recording();
    m_table->setFollows(true);
}

void FramesPage::askWhereToSave()
{
    auto *const dialog =
        new QFileDialog(this, tr("Save the frames"), m_folder, tr("Captures (*.pcapng)"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setDefaultSuffix(QLatin1String("pcapng"));
    connect(dialog, &QFileDialog::fileSelected, this, [this](const QString &path) {
        m_folder = QFileInfo(path).path();
        saveCapture(path);
    });
    dialog->open();
}

void FramesPage::askWhatToOpen()
{
    auto *const dialog = new QFileDialog(this, tr("Show a capture"), m_folder,
                                         tr("Captures (*.pcapng);;All files (*)"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::ExistingFile);
    connect(dialog, &QFileDialog::fileSelected, this, [this](const QString &path) {
        m_folder = QFileInfo(path).path();
        openCapture(path);
    });
    dialog->open();
}

} // namespace cnet::view
