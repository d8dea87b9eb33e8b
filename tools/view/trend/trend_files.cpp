#include "view/trend/output/trace_csv.h"
#include "view/trend/output/trend_picture.h"
#include "view/trend/trend_actions.h"
#include "view/trend/trend_page.h"

#include "host/text/whole_file.h"

#include <QBuffer>
#include <QDir>
#include <QFileDialog>

namespace cnet::view {

namespace {

constexpr qint64 kMegabyte = 1024 * 1024;

} // namespace

void TrendPage::connectFiles()
{
    connect(m_actions->saveCsv, &QAction::triggered, this,
            [this] { askPath(tr("Save samples"), {tr("CSV (*.csv)")}, &TrendPage::exportCsv); });
    connect(m_actions->savePicture, &QAction::triggered, this, [this] {
        askPath(tr("Save picture"), {tr("PNG (*.png)"), tr("SVG (*.svg)")},
                &TrendPage::exportImage);
    });
    connect(m_actions->record, &QAction::triggered, this, [this](bool isOn) {
        if (isOn) {
            m_actions->record->setChecked(false); // until there is a file
            askPath(tr("Record samples"), {tr("CSV (*.csv)")}, &TrendPage::startRecording);
        } else {
            stopRecording();
        }
    });
    connect(&m_record, &TrendRecord::failed, this, [this](const QString &text) {
        m_actions->record->setChecked(false);
        Q_EMIT troubled(text, tr("Make room on the disk, or record to another one."));
    });
}

void TrendPage::askPath(const QString &title, const QStringList &filters,
                        bool (TrendPage::*take)(const QString &))
{
    auto *dialog = new QFileDialog(this, title);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setNameFilters(filters);
    // A recording goes on with the one that is there.
    dialog->setOption(QFileDialog::DontConfirmOverwrite, take == &TrendPage::startRecording);
    const auto suffix = [dialog](const QString &filter) {
        const auto at = filter.lastIndexOf(QLatin1Char('.')) + 1;
        dialog->setDefaultSuffix(filter.mid(at).chopped(1));
    };
    suffix(filters.first());
    connect(dialog, &QFileDialog::filterSelected, dialog, suffix);
    connect(dialog, &QFileDialog::fileSelected, this,
            [this, take](const QString &path) { (this->*take)(path); });
    dialog->open();
}

bool TrendPage::write(const QString &path, const QByteArray &content)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || !replaceFile(file, content)) {
        Q_EMIT troubled(
            tr("%1 was not written: %2.").arg(QDir::toNativeSeparators(path), file.errorString()),
            tr("Choose another folder, or make room on the disk."));
        return false;
    }
    Q_EMIT told(tr("%1 was written.").arg(QDir::toNativeSeparators(path)));
    return true;
}

bool TrendPage::exportCsv(const QString &path)
{
    Range time = m_view.sight().time;
    if (const auto between = m_cursors.between()) {
        time = {(*between)[0], (*between)[1]};
    }
    QString error;
    const auto content = traceCsv(m_traces, time, error);
    if (!content) {
        Q_EMIT troubled(error, tr("Choose another time with both cursors, or by what is seen."));
        return false;
    }
    return write(path, *content);
}

bool TrendPage::exportImage(const QString &path)
{
    if (path.endsWith(QLatin1String(".svg"), Qt::CaseInsensitive)) {
        return write(path, trendSvg(*m_plot, tr("Trend")));
    }
    QByteArray content;
    QBuffer buffer(&content);
    if (!trendImage(*m_plot).save(&buffer, "PNG")) {
        Q_EMIT troubled(tr("The picture could not be drawn."), tr("Make the window smaller."));
        return false;
    }
    return write(path, content);
}

bool TrendPage::startRecording(const QString &path)
{
    QString error;
    if (!m_record.start(path, recordBound() * kMegabyte, error)) {
        Q_EMIT troubled(error, tr("Choose another file."));
        return false;
    }
    m_actions->record->setChecked(true);
    recordAll();
    Q_EMIT told(tr("Recording to %1.").arg(QDir::toNativeSeparators(m_record.path())));
    return true;
}

/** What holds as it begins. */
void TrendPage::recordAll()
{
    const qint64 nowMs = m_collector.nowMs();
    for (int i = 0; i < m_traces.count(); ++i) {
        const Trace &trace = m_traces.at(i);
        const auto last = trace.store->sample(trace.store->entries() - 1); // of a gap NaN
        m_record.add(trace.choice.name, nowMs, last.value, trace.quality);
    }
}

void TrendPage::stopRecording()
{
    const QString path = m_record.path();
    const bool wasRunning = m_record.isRunning();
    m_record.stop();
    m_actions->record->setChecked(false);
    if (wasRunning) {
        Q_EMIT told(tr("Recorded to %1.").arg(QDir::toNativeSeparators(path)));
    }
}

} // namespace cnet::view
