#include "ChildProcess.h"

#include <gtest/gtest.h>

#include <csignal>
#include <utility>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quiverly {

namespace {

// In the child, where nothing that could wait for another thread's lock may be called.
[[noreturn]] void become(char* const* arguments, const char* output, const char* errors) {
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    constexpr int flags = O_WRONLY | O_CREAT | O_TRUNC;
    if (::dup2(::open(output, flags, 0600), STDOUT_FILENO) < 0) ::_exit(126);
    if (::dup2(::open(errors, flags, 0600), STDERR_FILENO) < 0) ::_exit(126);
    ::execvp(arguments[0], arguments);
    ::_exit(127);
}

} // namespace

ChildProcess::ChildProcess(const std::vector<std::string>& command, const std::filesystem::path& output,
                           const std::filesystem::path& errors) {
    std::vector<char*> arguments;
    arguments.reserve(command.size() + 1);
    for (const std::string& argument : command) arguments.push_back(const_cast<char*>(argument.c_str()));
    arguments.push_back(nullptr);
    process = ::fork();
    if (process == 0) become(arguments.data(), output.c_str(), errors.c_str());
    if (process < 0) ADD_FAILURE() << command[0] << " cannot be started";
}

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
    ASSERT_GT(process, 0);
    ::kill(process, SIGCONT);
}

int ChildProcess::wait() {
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
