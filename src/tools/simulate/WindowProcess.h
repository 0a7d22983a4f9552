#pragma once

#include <sys/types.h>

#include <filesystem>
#include <string>
#include <utility>

#include <tl/expected.hpp>

#include "sockets/FileDescriptor.h"
#include "tools/simulate/WindowOutput.h"

namespace quiverly {

// The program that shows the simulated laptop in a window, as a child of this one: commands come from its standard
// output, and what the laptop tells it goes to its standard input, whose end makes it end.
class WindowProcess {
public:
    // Where the program is: beside this one, or where an installation keeps programs that nobody starts by hand.
    static std::filesystem::path program();

    // The error says why it cannot be started.
    static tl::expected<WindowProcess, std::string> start(const std::filesystem::path& program);

    WindowProcess(WindowProcess&& other) noexcept
        : process(std::exchange(other.process, -1)),
          commandPipe(std::move(other.commandPipe)),
          output(std::move(other.output)) {}
    WindowProcess& operator=(WindowProcess&&) = delete;
    ~WindowProcess();

    // Where its commands come from, a line each. They end with the window.
    int commands() const { return commandPipe.get(); }

    void report(std::int64_t millisecond, std::span<const std::uint8_t> bytes) { output.report(millisecond, bytes); }
    void tell(const window::Message& message) { output.tell(message); }
    pollfd room() const { return output.room(); }
    void flush() { output.flush(); }

    // Waits for the end of a window whose commands have ended. The error says what is wrong with that end.
    tl::expected<void, std::string> wait();

private:
    WindowProcess(pid_t process, FileDescriptor commands, FileDescriptor messages)
        : process(process), commandPipe(std::move(commands)), output(std::move(messages)) {}

    pid_t process; // -1 once it was waited for
    FileDescriptor commandPipe;
    WindowOutput output;
};

} // namespace quiverly
