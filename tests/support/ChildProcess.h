#pragma once

#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

#include <sys/resource.h>
#include <sys/types.h>
#include <unistd.h>

namespace quiverly {

// A program started for a test. It ends with this object, or with the test's process, whatever becomes of that.
class ChildProcess {
public:
    // The descriptors of what it reads and writes; they stay the caller's.
    struct Streams {
        int input = STDIN_FILENO;
        int output = STDOUT_FILENO;
        int errors = STDERR_FILENO;
    };

    // Looks the program up in $PATH.
    ChildProcess(const std::vector<std::string>& command, const Streams& streams);

    // Its output and its complaints go to files.
    ChildProcess(const std::vector<std::string>& command, const std::filesystem::path& output,
                 const std::filesystem::path& errors);
    ~ChildProcess() { kill(); }
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    void kill();   // at once, without a chance to tidy up
    void freeze(); // until thaw(); has taken effect when it returns
    void thaw();
    void signal(int number) const;
    void limitDescriptors(rlim_t most) const; // from now on

    // Waits for its end. Its exit status, or -1 when a signal ended it; when it does not end, the test has failed and
    // it is killed.
    int wait(std::chrono::seconds patience = std::chrono::minutes(1));

    bool isRunning() const; // frozen or not

private:
    pid_t process;
};

} // namespace quiverly
