#pragma once

#include <ls_master_k_cnet/ls_master_k_cnet.h>

#include <QLibrary>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <memory>

namespace cnet {

/** The driver's functions, each with the type that its header declares. */
struct DriverFunctions
{
    decltype(&intf_getProtocolType) getProtocolType = nullptr;
    decltype(&intf_getDriverParameter) getDriverParameter = nullptr;
    decltype(&intf_getDriverPropertyPage) getDriverPropertyPage = nullptr;
    decltype(&intf_getVersion) getVersion = nullptr;
    decltype(&intf_getRegListByType) getRegListByType = nullptr;
    decltype(&intf_getRegDiscription) getRegDiscription = nullptr;
    decltype(&intf_checkAddrValidity) checkAddrValidity = nullptr;
    decltype(&intf_checkAddr) checkAddr = nullptr;
    decltype(&intf_multiCopy) multiCopy = nullptr;
    decltype(&intf_setAddrValueChangeCallBack) setAddrValueChangeCallBack = nullptr;
    decltype(&intf_initProperty) initProperty = nullptr;
    decltype(&intf_addrMerge) addrMerge = nullptr;
    decltype(&intf_setRcpAddress) setRcpAddress = nullptr;
    decltype(&intf_getSendFrame) getSendFrame = nullptr;
    decltype(&intf_dealRcvFrame) dealRcvFrame = nullptr;
    decltype(&intf_getData) getData = nullptr;
    decltype(&intf_setData) setData = nullptr;
    decltype(&intf_addConditionRead) addConditionRead = nullptr;
};

/**
 * The driver, loaded at run time as an operator panel loads it: by file name, its functions by
 * their plain names.
 *
 * A loaded library has one state, so whoever loads the same file a second time gets a copy of it
 * under a name of its own, which is unloaded and removed with this object. The file itself stays
 * loaded until the program ends. Not for several threads.
 */
class DriverLibrary
{
public:
    DriverLibrary() = default;
    ~DriverLibrary();
    DriverLibrary(const DriverLibrary &) = delete;
    DriverLibrary &operator=(const DriverLibrary &) = delete;

    /**
     * Where the driver is looked for, in order: the directory `lib` beside the program's own, the
     * directory in which an installation has its libraries, the program's own, and the system's
     * search path.
     *
     * @param programDirectory directory of the program
     * @return existing files, and at the end the file name alone for the system's search
     */
    static QStringList candidates(const QString &programDirectory);

    /**
     * Loads the driver and looks up every function. Once only.
     *
     * @param path file to load; empty: the candidates beside the running program
     * @param error receives one sentence when the result is false: there is no such library, it
     * lacks a function, or it could not be copied
     */
    bool load(const QString &path, QString &error);

    /** The file that was asked for, or found. */
    const QString &fileName() const { return m_fileName; }

    /** Valid after load() has succeeded. */
    const DriverFunctions &functions() const { return m_functions; }

private:
    bool makeOwn(QString &error);
    bool resolveAll(QString &error);

    template <typename Function>
    bool resolve(const char *name, Function &function, QString &error);

    QLibrary m_library;
    DriverFunctions m_functions;
    QString m_fileName;
    QString m_taken; ///< the file that nobody else may load meanwhile
    std::unique_ptr<QTemporaryDir> m_copy;
};

} // namespace cnet
