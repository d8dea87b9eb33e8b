/** Runs test programs that were built as modules, each in a process of its own, until one fails.
 *
 *      mutation_runner MODULE=SECONDS...
 *
 *  SECONDS is the processor time that the module may take, 1 or more. Writes one line for each that
 *  passed, "passed MODULE MILLISECONDS", and at most one "killed MODULE HOW". Starting Qt is paid
 *  for once, and a module is left at its first failure. */
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>

#include <dlfcn.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

/** Memory that one test may take: a loop that fills a list must not take the machine with it. */
constexpr rlim_t kMemoryBytes = 1024UL * 1024 * 1024;

void limit(int resource, rlim_t value)
{
    const rlimit both = {value, value};
    setrlimit(resource, &both);
}

[[noreturn]] void runModule(const std::string &path, int seconds, int output)
{
    limit(RLIMIT_CORE, 0);
    limit(RLIMIT_CPU, static_cast<rlim_t>(seconds));
#ifndef __SANITIZE_ADDRESS__ // it reserves far more than it uses
    limit(RLIMIT_AS, kMemoryBytes);
#endif
    dup2(output, STDOUT_FILENO);
    dup2(open("/dev/null", O_WRONLY | O_CLOEXEC), STDERR_FILENO);
    void *module = dlopen(path.c_str(), RTLD_LAZY | RTLD_LOCAL);
    void *entry = module != nullptr ? dlsym(module, "main") : nullptr;
    if (entry == nullptr) {
        std::printf("FAIL!  : cannot be loaded: %s\n", dlerror());
        std::exit(1);
    }
    int (*run)(int, char **) = nullptr;
    std::memcpy(&run, &entry, sizeof run);
    std::string name = path;
    std::string option = "-nocrashhandler";
    char *arguments[] = {&name[0], &option[0], nullptr};
    std::exit(run(2, arguments));
}

/** What a process has come to: on a busy machine time says nothing about it. */
class Progress
{
public:
    explicit Progress(pid_t process)
        : m_path("/proc/" + std::to_string(process) + "/stat")
    {}

    /** To be asked once a second.
     *  @return  true when it has been waiting for something other than a processor or a disk, and
     *           has done nothing, for ten seconds: no test sleeps, so it waits for a lock for ever
     */
    bool isBlocked()
    {
        std::ifstream file(m_path);
        std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
        std::istringstream fields(text.substr(text.rfind(')') + 1));
        char state = '?';
        std::string skipped;
        long long user = 0;
        long long system = 0;
        fields >> state;
        for (int field = 4; field < 14; ++field) {
            fields >> skipped;
        }
        fields >> user >> system;
        m_idleSeconds = state == 'S' && user + system == m_ticks ? m_idleSeconds + 1 : 0;
        m_ticks = user + system;
        return m_idleSeconds >= 10;
    }

private:
    std::string m_path;
    long long m_ticks = -1;
    int m_idleSeconds = 0;
};

/** @return  the failed row, as the test's output names it; empty when it names none */
std::string failedRow(const std::string &output)
{
    const auto mark = output.find("\nFAIL!  : ");
    if (mark == std::string::npos) {
        return {};
    }
    const auto start = mark + 10;
    return output.substr(start, output.find('\n', start) - start);
}

/** Reads what the test writes until it ends, fails or waits for ever.
 *  @return  how it failed; empty when it did not say so */
std::string watch(int input, pid_t child)
{
    Progress progress(child);
    std::string output = "\n";
    for (;;) {
        pollfd waiting = {input, POLLIN, 0};
        if (poll(&waiting, 1, 1000) == 0) {
            if (progress.isBlocked()) {
                return "blocked";
            }
            continue;
        }
        char buffer[65536];
        const ssize_t size = read(input, buffer, sizeof buffer);
        if (size <= 0) {
            return failedRow(output);
        }
        output.append(buffer, static_cast<std::size_t>(size));
        const auto lastLine = output.rfind('\n');
        const std::string row = failedRow(output.substr(0, lastLine + 1));
        if (!row.empty()) {
            return row;
        }
        output.erase(0, lastLine);
    }
}

std::string fate(int status)
{
    if (WIFSIGNALED(status)) {
        return WTERMSIG(status) == SIGXCPU || WTERMSIG(status) == SIGKILL
                   ? "endless"
                   : std::string("crash: ") + strsignal(WTERMSIG(status));
    }
    return WEXITSTATUS(status) == 0 ? "" : "exit code " + std::to_string(WEXITSTATUS(status));
}

/** @return  false when the module failed */
bool passes(const std::string &path, int seconds)
{
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) {
        std::perror("pipe2");
        std::exit(2);
    }
    std::fflush(stdout);
    const pid_t child = fork();
    if (child < 0) {
        std::perror("fork");
        std::exit(2);
    }
    if (child == 0) {
        runModule(path, seconds, ends[1]);
    }
    close(ends[1]);
    std::string how = watch(ends[0], child);
    close(ends[0]);
    if (!how.empty()) {
        kill(child, SIGKILL);
    }
    int status = 0;
    rusage used = {};
    wait4(child, &status, 0, &used);
    if (how.empty()) {
        how = fate(status);
    }
    if (!how.empty()) {
        std::printf("killed %s %s\n", path.c_str(), how.c_str());
        return false;
    }
    const long milliseconds = used.ru_utime.tv_sec * 1000 + used.ru_utime.tv_usec / 1000 +
                              used.ru_stime.tv_sec * 1000 + used.ru_stime.tv_usec / 1000;
    std::printf("passed %s %ld\n", path.c_str(), milliseconds);
    return true;
}

} // namespace

int main(int argc, char **argv)
{
    for (int i = 1; i < argc; ++i) {
        const std::string argument = argv[i];
        const auto separator = argument.rfind('=');
        const int seconds =
            separator == std::string::npos ? 0 : std::atoi(argument.c_str() + separator + 1);
        if (seconds < 1) {
            std::fprintf(stderr, "usage: mutation_runner MODULE=SECONDS...\n");
            return 2;
        }
        if (!passes(argument.substr(0, separator), seconds)) {
            return 1;
        }
    }
    return 0;
}
