#include "tools/simulate/WindowProcess.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <system_error>

#include "platform/shared/program_file.h"
#include "sockets/input.h"
#include "sockets/interruptions.h"

namespace quiverly {

namespace {

constexpr char name[] = "quiverly-laptop-window";
constexpr std::chrono::seconds longestEnd{10}; // of a window whose commands have ended

std::string reason(int error) {
    return std::generic_category().message(error);
}

struct Pipe {
    FileDescriptor readEnd, writeEnd;
};

// Both ends are closed in a child; the error is one of the system.
tl::expected<Pipe, int> makePipe() {
    std::array<int, 2> ends = {};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) return tl::unexpected(errno);
    return Pipe{.readEnd = FileDescriptor(ends[0]), .writeEnd = FileDescriptor(ends[1])};
}

// How a child begins: with these as standard input and output, and all signals as they are for ordinary programs.
class Beginning {
public:
    Beginning(int input, int output) {
        ::posix_spawn_file_actions_init(&files);
        ::posix_spawn_file_actions_adddup2(&files, input, STDIN_FILENO);
        ::posix_spawn_file_actions_adddup2(&files, output, STDOUT_FILENO);
        sigset_t none;
        sigemptyset(&none);
        sigset_t ignoredHere;
        sigemptyset(&ignoredHere);
        for (const int signal : ignoredSignals) sigaddset(&ignoredHere, signal);
        ::posix_spawnattr_init(&attributes);
        ::posix_spawnattr_setsigmask(&attributes, &none);
        ::posix_spawnattr_setsigdefault(&attributes, &ignoredHere);
        ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    }
    ~Beginning() {
        ::posix_spawn_file_actions_destroy(&files);
        ::posix_spawnattr_destroy(&attributes);
    }
    Beginning(const Beginning&) = delete;
    Beginning& operator=(const Beginning&) = delete;

    posix_spawn_file_actions_t files;
    posix_spawnattr_t attributes;
};

} // namespace

std::filesystem::path WindowProcess::program() {
    const std::filesystem::path here = programFile().parent_path();
    std::filesystem::path installed = (here / QUIVERLY_HELPERS / name).lexically_normal();
    std::error_code unknown;
    return std::filesystem::exists(installed, unknown) ? std::move(installed) : here / name;
}

tl::expected<WindowProcess, std::string> WindowProcess::start(const std::filesystem::path& program) {
    const auto failure = [&](int error) { return tl::unexpected(program.string() + ": " + reason(error)); };
    auto commands = makePipe();
    if (!commands) return failure(commands.error());
    auto messages = makePipe();
    if (!messages) return failure(messages.error());

    const Beginning beginning(messages->readEnd.get(), commands->writeEnd.get());
    std::string file = program.string();
    const std::array<char*, 2> arguments = {file.data(), nullptr};
    pid_t process = -1;
    const int error = ::posix_spawn(&process, file.c_str(), &beginning.files, &beginning.attributes, arguments.data(),
                                    environ); // NOLINT(concurrency-mt-unsafe): one thread
    if (error != 0) return failure(error);
    return WindowProcess(process, std::move(commands->readEnd), std::move(messages->writeEnd));
}

WindowProcess::~WindowProcess() {
    if (process > 0) ::kill(process, SIGTERM); // one that does not read would not notice that its input has ended
}

tl::expected<void, std::string> WindowProcess::wait() {
    const FileDescriptor running(static_cast<int>(::syscall(SYS_pidfd_open, process, 0)));
    pollfd end = inputOf(running.get()); // there is something to read when the process has ended
    if (!waitForInput({&end, 1}, longestEnd)) ::kill(process, SIGKILL);
    int status = 0;
    const pid_t ended = ::waitpid(std::exchange(process, -1), &status, 0);
    if (ended < 0 && errno == ECHILD) return {}; // children are not waited for where their end is ignored
    if (ended < 0) return tl::unexpected("the window: " + reason(errno));
    if (WIFEXITED(status) && WEXITSTATUS(status) == 0) return {};
    if (WIFEXITED(status)) {
        return tl::unexpected("the window ended with status " + std::to_string(WEXITSTATUS(status)));
    }
    return tl::unexpected("the window was ended by signal " + std::to_string(WTERMSIG(status)));
}

} // namespace quiverly
