#pragma once

namespace cnet::panel {

/** What the program tells its caller. The values are documented in --help and must not move. */
enum ExitCode {
    kFine = 0,         ///< everything that was asked for was done
    kDeviceFailed = 1, ///< a device refused or did not answer
    kUsage = 2,        ///< a bad command line, register, address or file: nothing was sent
    kNoLink = 3,       ///< the link could not be opened
    kNoDriver = 4,     ///< the driver could not be loaded
    kOutputLost = 5,   ///< done, but the output could not be printed or stored
};

} // namespace cnet::panel
