#include "host/driver/driver_library.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace cnet {

namespace {

// With the number of its interface, as a host asks for it that is not built with the driver: the
// name without a number belongs to the files for building.
const char kFileName[] = CNET_HOST_DRIVER_NAME;

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

bool DriverLibrary::load(const QString &path)
{
    const QString wanted =
        path.isEmpty() ? candidates(QCoreApplication::applicationDirPath()).first() : path;
    // To open a pipe that nobody writes to would take for ever.
    const QFileInfo file(wanted);
    if (file.exists() && !file.isFile()) {
        m_errorText =
            QString::fromLatin1("cannot load the driver: %1 is no regular file").arg(wanted);
        return false;
    }
    m_library.setFileName(wanted);
    if (!m_library.load()) {
        m_errorText = QString::fromLatin1("cannot load the driver: %1")
                          .arg(m_library.errorString().simplified());
        return false;
    }
    return resolveAll();
}

template <typename Function>
bool DriverLibrary::resolve(const char *name, Function &function)
{
    function = reinterpret_cast<Function>(m_library.resolve(name));
    if (function == nullptr && m_errorText.isEmpty()) {
        m_errorText = QString::fromLatin1("'%1' is not this driver: it has no function %2")
                          .arg(m_library.fileName(), QLatin1String(name));
    }
    return function != nullptr;
}

bool DriverLibrary::resolveAll()
{
    m_errorText.clear();
    DriverFunctions &f = m_functions;
    return resolve("intf_getProtocolType", f.getProtocolType) &&
           resolve("intf_getDriverParameter", f.getDriverParameter) &&
           resolve("intf_getDriverPropertyPage", f.getDriverPropertyPage) &&
           resolve("intf_getVersion", f.getVersion) &&
           resolve("intf_getRegListByType", f.getRegListByType) &&
           resolve("intf_getRegDiscription", f.getRegDiscription) &&
           resolve("intf_checkAddrValidity", f.checkAddrValidity) &&
           resolve("intf_checkAddr", f.checkAddr) && //
           resolve("intf_multiCopy", f.multiCopy) &&
           resolve("intf_setAddrValueChangeCallBack", f.setAddrValueChangeCallBack) &&
           resolve("intf_initProperty", f.initProperty) &&
           resolve("intf_addrMerge", f.addrMerge) && //
           resolve("intf_setRcpAddress", f.setRcpAddress) &&
           resolve("intf_getSendFrame", f.getSendFrame) &&
           resolve("intf_dealRcvFrame", f.dealRcvFrame) && //
           resolve("intf_getData", f.getData) &&           //
           resolve("intf_setData", f.setData) &&
           resolve("intf_addConditionRead", f.addConditionRead);
}

} // namespace cnet
