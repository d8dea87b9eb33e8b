#include "host/text/whole_file.h"

#include <QFileInfo>

namespace cnet {

// commit() alone would not do: what it cannot write out of Qt's buffer it leaves out, and replaces
// the file by the rest.
bool replaceFile(QSaveFile &file, const QByteArray &content)
{
    return file.write(content) == content.size() && file.flush() && file.commit();
}

bool isNoFile(const QString &path)
{
    const QFileInfo info(path);
    return info.exists() && !info.isFile();
}

} // namespace cnet
