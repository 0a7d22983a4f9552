#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <fstream>
#include <list>
#include <sstream>
#include <vector>

#include "sockets/input.h"
#include "sockets/user_socket.h"
#include "support/ChildProcess.h"
#include "support/Listener.h"
#include "support/Pipe.h"
#include "support/RuntimeFolder.h"
#include "support/Waiting.h"

namespace quiverly {
namespace {

// quiverly-simulate itself, at the other ends of pipes.
class Program {
public:
    explicit Program(const std::vector<std::string>& arguments = {}, const std::string& file = QUIVERLY_SIMULATE)
        : process(command(file, arguments),
                  {.input = in.readEnd.get(), .output = out.writeEnd.get(), .errors = err.writeEnd.get()}) {
        for (FileDescriptor* const its : {&in.readEnd, &out.writeEnd, &err.writeEnd}) its->reset();
    }

    const ChildProcess* operator->() const { return &process; }

    void tell(const std::string& text) const {
        EXPECT_EQ(::write(in.writeEnd.get(), text.data(), text.size()), std::ssize(text));
    }
    void endInput() { in.writeEnd.reset(); }
    void closeOutput() { out.readEnd.reset(); }

    // The next line of its output; cut at the end of the output.
    std::string readLine() const {
        std::string line;
        pollfd input = inputOf(out.readEnd.get());
        for (char byte = 0; byte != '\n';) {
            EXPECT_TRUE(waitForInput({&input, 1}, std::chrono::minutes(1)));
            if (input.revents == 0 || ::read(input.fd, &byte, 1) != 1) break;
            line += byte;
        }
        return line;
    }

    // Waits for its end. Its exit status; less than 0 when a signal ended it.
    int status() { return process.wait(); }

    std::string output() const { return readAll(out); }
    std::string errors() const { return readAll(err); }

private:
    static std::vector<std::string> command(const std::string& file, const std::vector<std::string>& arguments) {
        std::vector<std::string> words = {file};
        words.insert(words.end(), arguments.begin(), arguments.end());
        return words;
    }

    static std::string readAll(const Pipe& from) {
        std::string text;
        for (char byte = 0; ::read(from.readEnd.get(), &byte, 1) == 1;) text += byte;
        return text;
    }

    Pipe in, out, err;
    ChildProcess process;
};

std::filesystem::path socketIn(const RuntimeFolder& folder) {
    return folder.path() / "quiverly-laptop.socket";
}

std::string readyLine(const RuntimeFolder& folder) {
    return "quiverly-simulate: ready at " + socketIn(folder).string() + "\n";
}

// Lines of a recording: as many reports at that time as one sample takes, the raw x in hexadecimal.
std::string eightReports(const std::string& time, const std::string& x) {
    std::ostringstream lines;
    for (int count = 0; count < 8; ++count) lines << time << " 000000000000" << x << "0000000000000000\n";
    return lines.str();
}

// A reader that has begun to listen to the laptop that is there.
struct StartedListener : Listener {
    StartedListener() { EXPECT_TRUE(starts()); }
};

TEST(SimulateProgramTest, SaysThatItIsReadyWhenItIs) {
    const RuntimeFolder folder;
    Program program;
    ASSERT_EQ(program.readLine(), readyLine(folder));
    struct stat status = {};
    ASSERT_EQ(::stat(socketIn(folder).c_str(), &status), 0);
    EXPECT_TRUE(S_ISSOCK(status.st_mode));
    EXPECT_EQ(status.st_mode & 07777, 0600U);
    const StartedListener listener;
    EXPECT_TRUE(listener.hears());
}

TEST(SimulateProgramTest, ObeysLinesAndEndsWithQuit) {
    const RuntimeFolder folder;
    Program program;
    program.readLine();
    const StartedListener listener;
    program.tell("slip\n# a remark\n\nsl");
    program.tell("ap 0.5\n");
    EXPECT_TRUE(listener.hearsSlap(1.45, [&] { program.tell("slap 0.5\n"); }));
    program.tell(std::string(5000, 'x') + "\nquit\n");
    EXPECT_EQ(program.status(), 0);
    EXPECT_EQ(program.errors(), "quiverly-simulate: unknown command \"slip\"\n"
                                "quiverly-simulate: a line of more than 1000 bytes is not a command\n");
    EXPECT_FALSE(std::filesystem::exists(socketIn(folder)));
}

TEST(SimulateProgramTest, GoesOnAfterTheEndOfItsInputAndObeysALastLineThatIsCut) {
    const RuntimeFolder folder;
    Program program;
    program.readLine();
    program.tell("tilt 1 0 0");
    program.endInput();
    const StartedListener listener;
    EXPECT_TRUE(waitUntil([&] { return listener.samples.last().x > 0.9; }));
}

TEST(SimulateProgramTest, TakesItsSocketAwayWhenItIsAskedToEnd) {
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        const RuntimeFolder folder;
        Program program;
        program.readLine();
        program->signal(signal);
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
                  "quiverly-simulate: " + socketIn(folder).string() + ": a simulated laptop is already running\n");
    }
    first.tell("appear\n");
    EXPECT_TRUE(waitUntil([&] { return std::filesystem::exists(socketIn(folder)); }));
    const StartedListener listener;
    EXPECT_TRUE(listener.hears());
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
    const StartedListener listener;
    EXPECT_TRUE(listener.hears());
}

TEST(SimulateProgramTest, OneOfTwoThatStartTogetherServes) {
    for (int count = 0; count < 20; ++count) {
        const RuntimeFolder folder;
        const Program one;
        const Program other;
        const std::string said = one.readLine() + other.readLine(); // nothing from the one that gave up
        EXPECT_EQ(said, readyLine(folder));
        const StartedListener listener;
    }
}

TEST(SimulateProgramTest, LeavesWhatIsNotASocketAlone) {
    const RuntimeFolder folder;
    std::ofstream(socketIn(folder)) << "precious";
    Program program;
    EXPECT_EQ(program.status(), 1);
    EXPECT_EQ(program.errors(), "quiverly-simulate: " + socketIn(folder).string() + ": exists and is not a socket\n");
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
    std::ostringstream script("0.05 tilt 0 0 -1\n", std::ios::ate);
    for (int tenths = 2; tenths < 200; tenths += 6) script << tenths / 10.0 << " slap 0.7\n";
    const Program program({"--script", folder.addFile("script", script.str()).string(), "--seed=9"});
    program.readLine();
    const StartedListener listener;
    EXPECT_TRUE(waitUntil([&] { return listener.samples.greatestMagnitude() > 1.68; }));
    EXPECT_LT(listener.samples.greatestMagnitude(), 1.72);
    EXPECT_LT(listener.samples.last().z, 0.0);
}

TEST(SimulateProgramTest, SendsAThousandReportsASecondAndEndsWithItsScript) {
    const RuntimeFolder folder;
    Program program({"--verbose", "--script", folder.addFile("script", "1 quit\n").string()});
    program.readLine();
    const StartedListener listener;
    EXPECT_EQ(program.status(), 0);
    int reports = 0;
    for (std::string line = program.readLine(); !line.empty(); line = program.readLine()) {
        int client = 0;
        int sent = 0;
        int dropped = 0;
        // NOLINTNEXTLINE(cert-err34-c): what is not read stays 0
        std::sscanf(line.c_str(), "client %d left after %d reports, %d dropped", &client, &sent, &dropped);
        reports += sent + dropped;
    }
    EXPECT_NEAR(reports, 1000, 1); // by the clock of its script
}

TEST(SimulateProgramTest, KeepsRunningWhenItsOutputIsNotRead) {
    const RuntimeFolder folder;
    Program program({"--verbose"});
    program.readLine();
    program.closeOutput();
    const StartedListener listener; // of which it would tell
    EXPECT_TRUE(listener.hears());
    program.tell("quit\n");
    EXPECT_EQ(program.status(), 0);
}

TEST(SimulateProgramTest, PlaysARecordingAndThenSleeps) {
    const RuntimeFolder folder;
    const auto recording =
        "# as a user sends it\n100 !start\n" + eightReports("100.5", "00000200") + eightReports("101.25", "00800000");
    Program program({"--verbose", "--recording", folder.addFile("file", recording).string()});
    program.readLine();
    const StartedListener listener;
    for (std::string line = "-"; line != "the recording has ended\n"; line = program.readLine()) ASSERT_NE(line, "");
    ASSERT_TRUE(waitUntil([&] { return listener.samples.count() == 2; }));
    EXPECT_EQ(listener.samples.all()[0].x, 2.0);
    EXPECT_EQ(listener.samples.all()[1].x, 0.5);
    program.tell("wake\n");
    EXPECT_TRUE(waitUntil([&] { return listener.samples.last().z > 0.9; }));
}

TEST(SimulateProgramTest, ReportsOfARecordingAreLostWhileTheLaptopSleeps) {
    const RuntimeFolder folder;
    const auto recording = folder.addFile("recording", eightReports("0", "00000200") + eightReports("0.2", "00000300") +
                                                           eightReports("0.6", "00800000"));
    const auto script = folder.addFile("file", "0.1 sleep\n0.4 wake\n");
    Program program({"--recording", recording.string(), "--script", script.string()});
    program.readLine();
    const StartedListener listener;
    ASSERT_TRUE(waitUntil([&] { return listener.samples.count() == 2; }));
    EXPECT_EQ(listener.samples.all()[0].x, 2.0);
    EXPECT_EQ(listener.samples.all()[1].x, 0.5);
}

TEST(SimulateProgramTest, SaysWhatIsWrongWithARecording) {
    const RuntimeFolder folder;
    const auto file = folder.addFile("file", "0 00\n0.1 xyz\n");
    Program program({"--recording", file.string()});
    program.readLine();
    const StartedListener listener;
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
    program->limitDescriptors(12);
    const auto address = SocketAddress::ofFile(socketIn(folder));
    std::list<FileDescriptor> clients;
    std::string said;
    while (said != "too many open files: a client was turned away\n") {
        ASSERT_LT(clients.size(), 13U);
        clients.push_back(packetSocket());
        ASSERT_EQ(::connect(clients.back().get(), address.get(), address.length()), 0);
        said = program.readLine();
    }
    ASSERT_GT(clients.size(), 2U);
    clients.clear();
    const StartedListener listener;
    EXPECT_TRUE(listener.hears());
}

TEST(SimulateProgramTest, UnusableOptionsEndItWithStatus2) {
    const RuntimeFolder folder;
    const std::vector<std::vector<std::string>> unusable = {
        {"--what"},        {"surplus"},
        {"--seed"},        {"--seed", "-1"},
        {"--seed=1x"},     {"--script"},
        {"--script", "/"}, {"--script", folder.addFile("file", "slap 1\n").string()},
        {"--recording=-"}, {"--verbose=1"},
    };
    for (const auto& arguments : unusable) {
        Program program(arguments);
        EXPECT_EQ(program.status(), 2) << arguments[0];
        EXPECT_EQ(program.output(), "") << arguments[0];
        EXPECT_TRUE(program.errors().starts_with("quiverly-simulate: ")) << arguments[0];
    }
}

TEST(SimulateProgramTest, SaysThatThereIsNoProgramForItsWindow) {
    const RuntimeFolder folder;
    const auto alone = folder.path() / "quiverly-simulate";
    std::filesystem::copy_file(QUIVERLY_SIMULATE, alone);
    Program program({"--window"}, alone.string());
    EXPECT_EQ(program.status(), 1);
    EXPECT_EQ(program.errors(), "quiverly-simulate: " + (folder.path() / "quiverly-laptop-window").string() +
                                    ": No such file or directory\n");
    EXPECT_FALSE(std::filesystem::exists(socketIn(folder)));
}

TEST(SimulateProgramTest, PrintsItsHelpAndItsVersion) {
    Program help({"--help"});
    EXPECT_EQ(help.status(), 0);
    EXPECT_NE(help.output().find("slap PEAK"), std::string::npos);
    Program version({"--version"});
    EXPECT_EQ(version.status(), 0);
    EXPECT_EQ(version.output().rfind("quiverly-simulate ", 0), 0U);
}

} // namespace
} // namespace quiverly
