#include "host/driver/driver_library.h"

#include "host/text/whole_file.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>

namespace cnet {

namespace {

// With the number of its interface, as a host asks for it that is not built with the driver: the
// name without a number belongs to the files for building.
const char kFileName[] = CNET_HOST_DRIVER_NAME;

// Canonical paths.
QSet<QString> &filesInUse()
{
    static QSet<QString> files;
    return files;
}

// Seen from the program: in a build, where an installation puts it, and beside the program.
const char *const kDirectories[] = {"../lib", CNET_HOST_DRIVER_DIRECTORY, "."};

} // namespace

QStringList DriverLibrary::candidates(const QString &programDirectory)
{
    const QDir program(programDirectory);
    const QString fileName = QLatin1String(kFileName);
    QStringList found;
    for (const char *const directory : kDirectories) {
        const QString path =
            QDir::cleanPath(QDir(program.filePath(QLatin1String(directory))).filePath(fileName));
        if (QFile::exists(path) && !found.contains(path)) {
            found.append(path);
        }
    }
    found.append(fileName);
    return found;
}

DriverLibrary::~DriverLibrary()
{
    if (m_copy) {
        m_library.unload();
    }
    filesInUse().remove(m_taken);
}

bool DriverLibrary::load(const QString &path, QString &error)
{
    m_fileName = path.isEmpty() ? candidates(QCoreApplication::applicationDirPath()).first() : path;
    if (isNoFile(m_fileName)) {
        error =
            QString::fromLatin1("cannot load the driver: %1 is no regular file").arg(m_fileName);
        return false;
    }
    m_library.setFileName(m_fileName);
    if (!m_library.load()) {
        // The loader tells of another name then, which it tried last.
        const bool missing =
            m_fileName.contains(QLatin1Char('/')) && !QFileInfo::exists(m_fileName);
        error = QString::fromLatin1("cannot load the driver: %1")
                    .arg(missing ? QString::fromLatin1("there is no file %1").arg(m_fileName)
                                 : m_library.errorString().simplified());
        return false;
    }
    return makeOwn(error) && resolveAll(error);
}

// Where the system's search path found the library, only the loaded one knows its file.
bool DriverLibrary::makeOwn(QString &error)
{
    const QString file = QFileInfo(m_library.fileName()).canonicalFilePath();
    const QString key = file.isEmpty() ? m_library.fileName() : file;
    if (!filesInUse().contains(key)) {
        filesInUse().insert(key);
        m_taken = key;
        return true;
    }
    m_copy = std::make_unique<QTemporaryDir>();
    const QString copy = m_copy->filePath(QLatin1String(kFileName));
    if (!m_copy->isValid() || !QFile::copy(key, copy)) {
        error = QString::fromLatin1("cannot copy the driver %1 to %2").arg(key, copy);
        return false;
    }
    m_library.setFileName(copy);
    if (!m_library.load()) {
        error = QString::fromLatin1("cannot load a copy of the driver: %1")
                    .arg(m_library.errorString().simplified());
        return false;
    }
    return true;
}

template <typename Function>
bool DriverLibrary::resolve(const char *name, Function &function, QString &error)
{
    function = reinterpret_cast<Function>(m_library.resolve(name));
    if (function == nullptr) {
        error = QString::fromLatin1("'%1' is not this driver: it has no function %2")
                    .arg(m_fileName, QLatin1String(name));
    }
    return function != nullptr;
}

bool DriverLibrary::resolveAll(QString &error)
{
    DriverFunctions &f = m_functions;
    return resolve("intf_getProtocolType", f.getProtocolType, error) &&
           resolve("intf_getDriverParameter", f.getDriverParameter, error) &&
           resolve("intf_getDriverPropertyPage", f.getDriverPropertyPage, error) &&
           resolve("intf_getVersion", f.getVersion, error) &&
           resolve("intf_getRegListByType", f.getRegListByType, error) &&
           resolve("intf_getRegDiscription", f.getRegDiscription, error) &&
           resolve("intf_checkAddrValidity", f.checkAddrValidity, error) &&
           resolve("intf_checkAddr", f.checkAddr, error) && //
           resolve("intf_multiCopy", f.multiCopy, error) &&
           resolve("intf_setAddrValueChangeCallBack", f.setAddrValueChangeCallBack, error) &&
           resolve("intf_initProperty", f.initProperty, error) &&
           resolve("intf_addrMerge", f.addrMerge, error) && //
           resolve("intf_setRcpAddress", f.setRcpAddress, error) &&
           resolve("intf_getSendFrame", f.getSendFrame, error) &&
           resolve("intf_dealRcvFrame", f.dealRcvFrame, error) && //
           resolve("intf_getData", f.getData, error) &&           //
           resolve("intf_setData", f.setData, error) &&
           resolve("intf_addConditionRead", f.addConditionRead, error);
}

} // namespace cnet
