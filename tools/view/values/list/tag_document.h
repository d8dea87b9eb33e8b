#pragma once

#include "host/tagfile/tag_file.h"

#include <QCoreApplication>
#include <QString>

#include <optional>

namespace cnet::view {

/** What came of opening or saving a file. */
struct DocumentResult
{
    bool isDone = false;
    QString error;               ///< a sentence where it is not
    QString advice;              ///< what to do about it; may be empty
    std::optional<TagFile> file; ///< with its mistakes, or its tags
};

/** The tag file that is open, so that saving keeps what people wrote around the tags. */
class TagDocument
{
    Q_DECLARE_TR_FUNCTIONS(cnet::view::TagDocument)

public:
    /** Where it is; empty: nothing is open. */
    const QString &path() const { return m_path; }

    /** Reads a file; one with mistakes leaves the one that is open. */
    DocumentResult open(const QString &path, const TagReading &reading);

    /**
     * Writes tags to a file, whole or not at all. In the file that is open the comments, columns
     * and order stay, as they do in a file that is there while none is open; it is not overwritten
     * where somebody else has changed it since.
     *
     * @param tags with names that differ, each with one
     */
    DocumentResult save(const QString &path, const QVector<Tag> &tags, const TagReading &reading);

private:
    void take(const QString &path, const QByteArray &content, const TagFile &file);

    QString m_path;
    QByteArray m_content; ///< as it was read or written last
    std::optional<TagFile> m_file;
};

/** The tags with a name for each that has none, "D_W_100", for a file cannot do without. */
QVector<Tag> namedTags(const QVector<Tag> &tags);

} // namespace cnet::view
