#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <array>
#include <csignal>
#include <fstream>
#include <list>
#include <memory>
#include <sstream>
#include <utility>
#include <vector>

#include "LiveLaptop.h"
#include "RuntimeFolder.h"
#include "Waiting.h"
#include "platform/linux/laptop/LaptopConnection.h"
#include "sensing/AccelerometerReader.h"

namespace quiverly {
namespace {

// quiverly-simulate itself, its standard input, output and errors at the other ends of pipes.
class Program {
public:
    explicit Program(std::vector<std::string> arguments = {}) {
        const auto [input, inputEnd] = pipe();
        const auto [outputEnd, output] = pipe();
        const auto [errorsEnd, errors] = pipe();
        arguments.insert(arguments.begin(), QUIVERLY_SIMULATE);
        std::vector<char*> words;
        words.reserve(arguments.size() + 1);
        for (std::string& argument : arguments) words.push_back(argument.data());
        words.push_back(nullptr);
        child = ::fork();
        if (child == 0) {
            ::dup2(input, STDIN_FILENO);
            ::dup2(output, STDOUT_FILENO);
            ::dup2(errors, STDERR_FILENO);
            ::execv(words[0], words.data());
            ::_exit(127);
        }
        for (const int number : {input, output, errors}) ::close(number);
        in = FileDescriptor(inputEnd);
        out = FileDescriptor(outputEnd);
        err = FileDescriptor(errorsEnd);
    }

    ~Program() {
        if (child < 0) return;
        ::kill(child, SIGKILL);
        ::waitpid(child, nullptr, 0);
    }

    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    void tell(const std::string& text) const {
        EXPECT_EQ(::write(in.get(), text.data(), text.size()), std::ssize(text));
    }
    void endInput() { in.reset(); }
    void limitDescriptors(rlim_t most) const {
        const rlimit limit{.rlim_cur = most, .rlim_max = most};
        EXPECT_EQ(::prlimit(child, RLIMIT_NOFILE, &limit, nullptr), 0);
    }
    void signal(int number) const { ::kill(child, number); }

    std::string readLine() const {
        std::string line;
        for (char byte = 0; byte != '\n' && ::read(out.get(), &byte, 1) == 1;) line += byte;
        return line;
    }

    // Exit status; less than 0 when a signal ended it. Waits for the end.
    int status() {
        int state = 0;
        ::waitpid(std::exchange(child, -1), &state, 0);
        return WIFEXITED(state) ? WEXITSTATUS(state) : -WTERMSIG(state);
    }

    std::string output() const { return readAll(out); }
    std::string errors() const { return readAll(err); }

private:
    static std::array<int, 2> pipe() {
        std::array<int, 2> ends = {};
        EXPECT_EQ(::pipe2(ends.data(), O_CLOEXEC), 0);
        return ends;
    }

    static std::string readAll(const FileDescriptor& from) {
        std::string text;
        for (char byte = 0; ::read(from.get(), &byte, 1) == 1;) text += byte;
        return text;
    }

    pid_t child = -1;
    FileDescriptor in, out, err;
};

std::filesystem::path socketIn(const RuntimeFolder& folder) {
    return folder.path() / "quiverly-laptop.socket";
}

std::string readyLine(const RuntimeFolder& folder) {
    return "quiverly-simulate: ready at " + socketIn(folder).string() + "\n";
}

std::filesystem::path write(const RuntimeFolder& folder, const std::string& text) {
    auto file = folder.path() / "file";
    std::ofstream(file, std::ios::binary) << text;
    return file;
}

// Lines of a recording: as many reports at that time as one sample takes, the raw x in hexadecimal.
std::string eightReports(const std::string& time, const std::string& x) {
    std::ostringstream lines;
    for (int count = 0; count < 8; ++count) lines << time << " 000000000000" << x << "0000000000000000\n";
    return lines.str();
}

// A reader of the laptop that is there.
struct LaptopListener {
    LaptopListener() {
        reader.onSample = samples.receiver();
        EXPECT_TRUE(reader.start()) << reader.lastOpenError().value_or("");
    }
    Samples samples;
    AccelerometerReader reader;
};

TEST(SimulateProgramTest, SaysThatItIsReadyWhenItIs) {
    const RuntimeFolder folder;
    Program program;
    ASSERT_EQ(program.readLine(), readyLine(folder));
    struct stat status = {};
    ASSERT_EQ(::stat(socketIn(folder).c_str(), &status), 0);
    EXPECT_TRUE(S_ISSOCK(status.st_mode));
    EXPECT_EQ(status.st_mode & 07777, 0600U);
    const LaptopListener listener;
    EXPECT_TRUE(waitUntil([&] { return listener.samples.count() > 0; }));
}

TEST(SimulateProgramTest, ObeysLinesAndEndsWithQuit) {
    const RuntimeFolder folder;
    Program program;
    program.readLine();
    const LaptopListener listener;
    program.tell("slip\n# a remark\n\nsl");
    program.tell("ap 0.5\n");
    EXPECT_TRUE(waitUntil([&] { return listener.samples.greatestMagnitude() > 1.45; }));
    program.tell(std::string(5000, 'x') + "\nquit\n");
    EXPECT_EQ(program.status(), 0);
    EXPECT_EQ(program.errors(), "quiverly-simulate: unknown command \"slip\"\n"
                                "quiverly-simulate: a line of more than 1000 bytes is no command\n");
    EXPECT_FALSE(std::filesystem::exists(socketIn(folder)));
}

TEST(SimulateProgramTest, GoesOnAfterTheEndOfItsInputAndObeysALastLineThatIsCut) {
    const RuntimeFolder folder;
    Program program;
    program.readLine();
    program.tell("tilt 1 0 0");
    program.endInput();
    const LaptopListener listener;
    EXPECT_TRUE(waitUntil([&] { return listener.samples.last().x > 0.9; }));
}

TEST(SimulateProgramTest, TakesItsSocketAwayWhenItIsAskedToEnd) {
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        const RuntimeFolder folder;
        Program program;
        program.readLine();
        program.signal(signal);
        EXPECT_EQ(program.status(), 0);
        EXPECT_FALSE(std::filesystem::exists(socketIn(folder)));
    }
}

TEST(SimulateProgramTest, LeavesTheOneThatRunsAlone) {
    const RuntimeFolder folder;
    Program first;
    first.readLine();
    for (const char* command : {"rest\n", "vanish\n"}) {
        first.tell(command);
        Program second;
        EXPECT_EQ(second.status(), 1);
        EXPECT_EQ(second.output(), "");
        EXPECT_EQ(second.errors(),
                  "quiverly-simulate: " + socketIn(folder).string() + ": a simulated laptop runs already\n");
    }
    first.tell("appear\n");
    EXPECT_TRUE(waitUntil([&] { return std::filesystem::exists(socketIn(folder)); }));
    const LaptopListener listener;
    EXPECT_TRUE(waitUntil([&] { return listener.samples.count() > 0; }));
}

TEST(SimulateProgramTest, ReplacesTheSocketOfOneThatWasKilled) {
    const RuntimeFolder folder;
    {
        const Program killed;
        killed.readLine();
    }
    EXPECT_TRUE(std::filesystem::exists(socketIn(folder)));
    const Program program;
    EXPECT_EQ(program.readLine(), readyLine(folder));
    const LaptopListener listener;
    EXPECT_TRUE(waitUntil([&] { return listener.samples.count() > 0; }));
}

TEST(SimulateProgramTest, OneOfTwoThatStartTogetherServes) {
    for (int count = 0; count < 20; ++count) {
        const RuntimeFolder folder;
        const Program one;
        const Program other;
        const std::string said = one.readLine() + other.readLine(); // nothing from the one that gave up
        EXPECT_EQ(said, readyLine(folder));
        AccelerometerReader reader;
        EXPECT_TRUE(reader.start());
    }
}

TEST(SimulateProgramTest, TouchesNothingThatIsNoSocket) {
    const RuntimeFolder folder;
    std::ofstream(socketIn(folder)) << "precious";
    Program program;
    EXPECT_EQ(program.status(), 1);
    EXPECT_EQ(program.errors(),
              "quiverly-simulate: " + socketIn(folder).string() + ": is in the way and is no socket\n");
    EXPECT_EQ(std::filesystem::file_size(socketIn(folder)), 8U);
}

TEST(SimulateProgramTest, SaysWhyItCannotServe) {
    setRuntimeFolder("/nonexistent");
    Program program;
    EXPECT_EQ(program.status(), 1);
    EXPECT_EQ(program.errors(), "quiverly-simulate: /nonexistent/quiverly-laptop.lock: No such file or directory\n");
}

TEST(SimulateProgramTest, FollowsAScriptFromItsFirstReportOn) {
    const RuntimeFolder folder;
    Program program({"--script", write(folder, "0.05 tilt 0 0 -1\n0.2 slap 0.7\n0.6 quit\n").string(), "--seed=9"});
    program.readLine();
    const LaptopListener listener;
    EXPECT_EQ(program.status(), 0);
    EXPECT_NEAR(listener.samples.greatestMagnitude(), 1.7, 0.02);
    EXPECT_LT(listener.samples.last().z, -0.9);
}

TEST(SimulateProgramTest, PlaysARecordingAndThenSleeps) {
    const RuntimeFolder folder;
    const auto recording =
        "# as a user sends it\n100 !start\n" + eightReports("100.5", "00000200") + eightReports("101.25", "00800000");
    Program program({"--verbose", "--recording", write(folder, recording).string()});
    program.readLine();
    const LaptopListener listener;
    for (std::string line = "-"; line != "the recording has ended\n"; line = program.readLine()) ASSERT_NE(line, "");
    EXPECT_TRUE(waitUntil([&] { return listener.samples.count() == 2; }));
    EXPECT_EQ(listener.samples.all()[0].x, 2.0);
    EXPECT_EQ(listener.samples.all()[1].x, 0.5);
    program.tell("wake\n");
    EXPECT_TRUE(waitUntil([&] { return listener.samples.last().z > 0.9; }));
}

TEST(SimulateProgramTest, WhatARecordingHoldsWhileTheLaptopSleepsIsLost) {
    const RuntimeFolder folder;
    const auto recording = folder.path() / "recording";
    std::ofstream(recording) << eightReports("0", "00000200") << eightReports("0.2", "00000300")
                             << eightReports("0.6", "00800000");
    const auto script = write(folder, "0.1 sleep\n0.4 wake\n");
    Program program({"--recording", recording.string(), "--script", script.string()});
    program.readLine();
    const LaptopListener listener;
    EXPECT_TRUE(waitUntil([&] { return listener.samples.count() == 2; }));
    EXPECT_EQ(listener.samples.all()[0].x, 2.0);
    EXPECT_EQ(listener.samples.all()[1].x, 0.5);
}

TEST(SimulateProgramTest, SaysWhatIsWrongWithARecording) {
    const RuntimeFolder folder;
    const auto file = write(folder, "0 00\n0.1 xyz\n");
    Program program({"--recording", file.string()});
    program.readLine();
    const LaptopListener listener;
    EXPECT_EQ(program.status(), 1);
    EXPECT_EQ(program.errors().rfind("quiverly-simulate: " + file.string() + ":2: ", 0), 0U);
    EXPECT_FALSE(std::filesystem::exists(socketIn(folder)));

    Program missing({"--recording", "/nonexistent/recording"});
    EXPECT_EQ(missing.status(), 1);
    EXPECT_EQ(missing.errors(), "quiverly-simulate: /nonexistent/recording: No such file or directory\n");
}

TEST(SimulateProgramTest, TurnsClientsAwayWhenItHasNoDescriptorLeft) {
    const RuntimeFolder folder;
    const Program program({"--verbose"});
    program.readLine();
    program.limitDescriptors(12);
    std::list<std::shared_ptr<LaptopConnection>> clients;
    for (clients.push_back(LaptopConnection::connect()); clients.back();
         clients.push_back(LaptopConnection::connect())) {
        ASSERT_LT(clients.size(), 13U);
    }
    ASSERT_GT(clients.size(), 2U);
    for (std::string line = "-"; line != "too many open files: a client was turned away\n"; line = program.readLine()) {
        ASSERT_NE(line, "");
    }
    clients.pop_front();
    EXPECT_TRUE(waitUntil([] { return LaptopConnection::connect() != nullptr; }));
}

TEST(SimulateProgramTest, UnusableOptionsEndItWithStatus2) {
    const RuntimeFolder folder;
    const std::vector<std::vector<std::string>> unusable = {
        {"--what"},        {"surplus"},     {"--seed"},        {"--seed", "-1"},
        {"--seed=1x"},     {"--script"},    {"--script", "/"}, {"--script", write(folder, "slap 1\n").string()},
        {"--recording=-"}, {"--verbose=1"},
    };
    for (const auto& arguments : unusable) {
        Program program(arguments);
        EXPECT_EQ(program.status(), 2) << arguments[0];
        EXPECT_EQ(program.output(), "") << arguments[0];
        EXPECT_NE(program.errors(), "") << arguments[0];
    }
}

TEST(SimulateProgramTest, TellsOfItself) {
    Program help({"--help"});
    EXPECT_EQ(help.status(), 0);
    EXPECT_NE(help.output().find("slap PEAK"), std::string::npos);
    Program version({"--version"});
    EXPECT_EQ(version.status(), 0);
    EXPECT_EQ(version.output().rfind("quiverly-simulate ", 0), 0U);
}

} // namespace
} // namespace quiverly
