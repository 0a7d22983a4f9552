#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include <sys/types.h>

namespace quiverly {

// A program started for a test. It ends with this object, or with the test's process, whatever becomes of that.
class ChildProcess {
public:
    // Looks the program up in $PATH. Its output and its complaints go to files.
    ChildProcess(const std::vector<std::string>& command, const std::filesystem::path& output,
                 const std::filesystem::path& errors);
    ~ChildProcess() { kill(); }
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    void kill();   // at once, without a chance to tidy up
    void freeze(); // until thaw(); has taken effect when it returns
    void thaw();
    int wait(); // for its end; its exit status, or -1 when a signal ended it

    bool isRunning() const; // frozen or not

private:
    pid_t process;
};

} // namespace quiverly
