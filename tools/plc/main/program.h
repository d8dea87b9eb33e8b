#pragma once

#include "host/capture/capture.h"
#include "plc/control/control_server.h"
#include "plc/control/script_player.h"
#include "plc/main/output.h"
#include "plc/main/standard_input.h"
#include "plc/options/options.h"
#include "plc/servers/pty_server.h"
#include "plc/servers/tcp_server.h"

#include <QTimer>

#include <memory>
#include <vector>

namespace plc {

/** The program from its command line to its end: stations, servers, and who commands them. */
class Program
{
public:
    /** @param options must outlive the program. */
    explicit Program(const Options &options);
    Program(const Program &) = delete;
    Program &operator=(const Program &) = delete;

    /** Opens everything and says where it is. @return the exit code; not 0: it must not run. */
    int open();

    /** Runs until somebody ends it, then saves the memory. @return the exit code. */
    int run();

private:
    int openCapture();
    int openServers();
    int openControl();
    int readScript();
    int announce();

    const Options &m_options;
    Bus m_bus;
    Connections m_connections;
    std::unique_ptr<cnet::Capture> m_capture; ///< null: none is asked for
    ServerSetup m_setup;
    ControlTarget m_target;
    std::vector<std::unique_ptr<TcpServer>> m_servers;
    std::unique_ptr<PtyServer> m_pty;
    std::vector<std::unique_ptr<ControlServer>> m_control;
    std::unique_ptr<ScriptPlayer> m_player;
    std::unique_ptr<StandardInput> m_input;
    QTimer m_tick;
};

} // namespace plc
