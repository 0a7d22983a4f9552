#include "support/ChildProcess.h"

#include <gtest/gtest.h>

#include <csignal>
#include <utility>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include "sockets/FileDescriptor.h"
#include "sockets/input.h"

namespace quiverly {

namespace {

// In the child, where nothing that could wait for another thread's lock may be called.
[[noreturn]] void become(char* const* arguments, const ChildProcess::Streams& streams) {
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (::dup2(streams.input, STDIN_FILENO) < 0) ::_exit(126);
    if (::dup2(streams.output, STDOUT_FILENO) < 0) ::_exit(126);
    if (::dup2(streams.errors, STDERR_FILENO) < 0) ::_exit(126);
    ::execvp(arguments[0], arguments);
    ::_exit(127);
}

FileDescriptor fresh(const std::filesystem::path& file) {
    return FileDescriptor(::open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600));
}

} // namespace

ChildProcess::ChildProcess(const std::vector<std::string>& command, const Streams& streams) {
    std::vector<char*> arguments;
    arguments.reserve(command.size() + 1);
    for (const std::string& argument : command) arguments.push_back(const_cast<char*>(argument.c_str()));
    arguments.push_back(nullptr);
    process = ::fork();
    if (process == 0) become(arguments.data(), streams);
    if (process < 0) ADD_FAILURE() << command[0] << " cannot be started";
}

ChildProcess::ChildProcess(const std::vector<std::string>& command, const std::filesystem::path& output,
                           const std::filesystem::path& errors)
    : ChildProcess(command, {.output = fresh(output).get(), .errors = fresh(errors).get()}) {}

void ChildProcess::kill() {
    if (process <= 0) return;
    ::kill(process, SIGKILL);
    wait();
}

void ChildProcess::freeze() {
    ASSERT_GT(process, 0); // no process: the signal would go to others
    ::kill(process, SIGSTOP);
    int status = 0;
    EXPECT_EQ(::waitpid(process, &status, WUNTRACED), process);
    EXPECT_TRUE(WIFSTOPPED(status));
}

void ChildProcess::thaw() {
    signal(SIGCONT);
}

void ChildProcess::signal(int number) const {
    ASSERT_GT(process, 0);
    ::kill(process, number);
}

void ChildProcess::limitDescriptors(rlim_t most) const {
    ASSERT_GT(process, 0);
    const rlimit limit{.rlim_cur = most, .rlim_max = most};
    EXPECT_EQ(::prlimit(process, RLIMIT_NOFILE, &limit, nullptr), 0);
}

int ChildProcess::wait(std::chrono::seconds patience) {
    if (process <= 0) return -1;
    const FileDescriptor running(static_cast<int>(::syscall(SYS_pidfd_open, process, 0)));
    pollfd end = inputOf(running.get()); // there is something to read when the process has ended
    if (!waitForInput({&end, 1}, patience)) {
        ADD_FAILURE() << "the program does not end";
        ::kill(process, SIGKILL);
    }
    int status = 0;
    if (::waitpid(std::exchange(process, -1), &status, 0) < 0) return -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

bool ChildProcess::isRunning() const {
    siginfo_t end{};
    return process > 0 && ::waitid(P_PID, static_cast<id_t>(process), &end, WEXITED | WNOHANG | WNOWAIT) == 0 &&
           end.si_pid == 0;
}

} // namespace quiverly
