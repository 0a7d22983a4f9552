#include "tools/simulate/WindowProcess.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>

#include "sockets/input.h"
#include "sockets/interruptions.h"
#include "support/Files.h"
#include "support/Listener.h"
#include "support/Pipe.h"
#include "support/RuntimeFolder.h"
#include "support/Waiting.h"
#include "tools/simulate/CommandInput.h"
#include "tools/simulate/Simulator.h"

namespace quiverly {
namespace {

// A window that is a script of the shell.
class WindowProcessTest : public testing::Test {
protected:
    WindowProcessTest() { std::signal(SIGPIPE, SIG_IGN); } // as the program does

    WindowProcess start(const std::string& script) const {
        const auto file = folder.addFile("window", "#!/bin/sh\n" + script);
        std::filesystem::permissions(file, std::filesystem::perms::owner_all);
        auto process = WindowProcess::start(file);
        if (!process) throw std::runtime_error(process.error());
        return *std::move(process);
    }

    // All lines of a window until its end.
    static std::vector<std::string> commandsOf(const WindowProcess& window) {
        CommandInput input(window.commands());
        std::vector<std::string> lines;
        while (!input.hasEnded()) {
            pollfd ready = inputOf(input.descriptor());
            if (!waitForInput({&ready, 1}, std::chrono::minutes(1))) throw std::runtime_error("the window is silent");
            for (const std::string& line : input.read()) lines.push_back(line);
        }
        return lines;
    }

    RuntimeFolder folder;
};

TEST_F(WindowProcessTest, CommandsComeFromTheWindowAndMessagesGoThere) {
    WindowProcess window = start("read -r line; echo \"got $line\"\n");
    window.tell(window::Obeyed{"walk"});
    EXPECT_EQ(commandsOf(window), (std::vector<std::string>{"got obeyed walk", ""}));
    EXPECT_TRUE(window.wait());
}

TEST_F(WindowProcessTest, AWindowThatFailsIsAnError) {
    WindowProcess failing = start("exit 3\n");
    commandsOf(failing);
    EXPECT_EQ(failing.wait().error(), "the window ended with status 3");
    WindowProcess killed = start("kill -KILL $$\n");
    commandsOf(killed);
    EXPECT_EQ(killed.wait().error(), "the window was ended by signal 9");
}

TEST_F(WindowProcessTest, AProgramThatIsMissingIsAnError) {
    const auto window = WindowProcess::start("/nonexistent/window");
    ASSERT_FALSE(window);
    EXPECT_EQ(window.error(), "/nonexistent/window: No such file or directory");
}

TEST_F(WindowProcessTest, TheWindowHasTheSignalsOfAnOrdinaryProgram) {
    for (const int signal : ignoredSignals) std::signal(signal, SIG_IGN);
    sigset_t blocked;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGTERM);
    ::pthread_sigmask(SIG_BLOCK, &blocked, nullptr);
    const WindowProcess window = start("grep -E '^Sig(Blk|Ign)' /proc/self/status\n");
    ::pthread_sigmask(SIG_UNBLOCK, &blocked, nullptr);
    for (const int signal : {SIGTTIN, SIGXFSZ}) std::signal(signal, SIG_DFL);
    for (const std::string& line : commandsOf(window)) {
        if (line.empty()) continue;
        const auto signals = std::stoull(line.substr(line.find('\t') + 1), nullptr, 16);
        for (const int signal : {SIGTERM, SIGPIPE, SIGTTIN, SIGXFSZ})
            EXPECT_EQ(signals >> (signal - 1) & 1U, 0U) << line;
    }
}

// What a laptop does with a window, on this thread; `window` reads its messages and writes commands.
class WindowOfALaptopTest : public WindowProcessTest {
protected:
    tl::expected<void, std::string> run(const std::string& window) {
        EXPECT_TRUE(simulator.open());
        simulator.show(start(window));
        return simulator.run(input.readEnd.get(), -1);
    }

    void type(const std::string& line) const {
        EXPECT_EQ(::write(input.writeEnd.get(), line.data(), line.size()), std::ssize(line));
    }

    Pipe input;

    std::ostringstream output, errors;
    Simulator simulator{{.verbose = true}, output, errors};
};

TEST_F(WindowOfALaptopTest, ItsCommandsAreObeyedAndToldBackAndItsEndIsTheLaptops) {
    const auto ended = run("echo slap 0.5; echo walk; echo nonsense\n"
                           "for line in 1 2 3 4; do read -r told; echo \"# $told\"; echo \"$told\" >&2; done\n");
    EXPECT_TRUE(ended);
    EXPECT_EQ(errors.str(), "quiverly-simulate: the sensor does not report now: the slap is lost\n"
                            "quiverly-simulate: unknown command \"nonsense\"\n");
    EXPECT_NE(output.str().find("\nslap 0.5\nwalk\n"), std::string::npos);
}

TEST_F(WindowOfALaptopTest, ASensorThatCannotAppearIsAProblemAndNotObeyed) {
    const std::string socket = (folder.path() / "quiverly-laptop.socket").string();
    const std::string told = (folder.path() / "told").string();
    EXPECT_TRUE(run("echo vanish; read -r line; mkdir " + socket + "; echo appear; read -r line; echo \"$line\" >" +
                    told + "; echo quit; exec sleep 600\n"));
    EXPECT_TRUE(bytesOf(told).starts_with("problem ")) << bytesOf(told);
}

TEST_F(WindowOfALaptopTest, AWindowThatFailsEndsTheLaptopWithAnError) {
    EXPECT_EQ(run("exit 4\n").error(), "the window ended with status 4");
}

TEST_F(WindowOfALaptopTest, QuitInTheWindowEndsTheLaptopThoughTheWindowIsStillThere) {
    EXPECT_TRUE(run("echo quit; exec sleep 600\n"));
}

TEST_F(WindowOfALaptopTest, ItIsToldOfTheReaderAndOfTheReportsAndTheirEnd) {
    tl::expected<void, std::string> ended;
    std::thread laptop([&] {
        ended = run("while read -r line; do case $line in\n"
                    "reporting*) reader=known;;\n"
                    "report*) [ \"$tilted\" ] || [ ! \"$reader\" ] || echo \"tilt 1 0 0\"; tilted=yes;;\n"
                    "silent) [ ! \"$tilted\" ] || exit 0;;\n"
                    "esac; done\n");
    });
    {
        ASSERT_TRUE(waitUntil([&] { return std::filesystem::exists(folder.path() / "quiverly-laptop.socket"); }));
        Listener listener;
        EXPECT_TRUE(listener.starts());
        EXPECT_TRUE(waitUntil([&] { return listener.samples.last().x > 0.9; }));
    }
    laptop.join();
    EXPECT_TRUE(ended);
}

// Reports go on though the window does not read them.
TEST_F(WindowOfALaptopTest, AWindowThatDoesNotReadHoldsNothingUp) {
    std::thread laptop([&] { EXPECT_TRUE(run("exec sleep 600\n")); });
    {
        ASSERT_TRUE(waitUntil([&] { return std::filesystem::exists(folder.path() / "quiverly-laptop.socket"); }));
        Listener listener;
        EXPECT_TRUE(listener.starts());
        EXPECT_TRUE(waitUntil([&] { return listener.samples.count() > 300; })); // 2400 reports overfill the pipe
        type("tilt 1 0 0\n");
        EXPECT_TRUE(waitUntil([&] { return listener.samples.last().x > 0.9; }));
    }
    type("quit\n");
    laptop.join();
}

} // namespace
} // namespace quiverly
