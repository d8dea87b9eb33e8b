#include "panel/driver_library.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

namespace panel {

namespace {

const char kBareName[] = "ls_master_k_cnet";
const char kFileName[] = "libls_master_k_cnet.so";

} // namespace

QStringList DriverLibrary::candidates(const QString &programDirectory)
{
    const QDir directory(programDirectory);
    const QString fileName = QLatin1String(kFileName);
    QStringList found;
    for (const QString &path :
         {directory.filePath(QLatin1String("../lib/") + fileName), directory.filePath(fileName)}) {
        if (QFile::exists(path)) {
            found.append(QDir::cleanPath(path));
        }
    }
    found.append(QLatin1String(kBareName));
    return found;
}

bool DriverLibrary::load(const QString &path)
{
    const QString wanted =
        path.isEmpty() ? candidates(QCoreApplication::applicationDirPath()).first() : path;
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

} // namespace panel
