#include "tools/simulate/window/SimulatorLink.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <vector>

#include <QApplication>

#include "support/Pipe.h"

namespace quiverly {
namespace {

class SimulatorLinkTest : public testing::Test {
protected:
    SimulatorLinkTest() {
        std::signal(SIGPIPE, SIG_IGN); // as the program does
        link.onMessage = [this](const window::Message& message) { received.push_back(message); };
        link.onEnd = [this] { ended = true; };
    }

    void write(const std::string& text) {
        EXPECT_EQ(::write(messages.writeEnd.get(), text.data(), text.size()), std::ssize(text));
        QApplication::processEvents();
    }

    Pipe messages, commands;
    SimulatorLink link{messages.readEnd.get(), commands.writeEnd.get()};
    std::vector<window::Message> received;
    bool ended = false;
};

TEST_F(SimulatorLinkTest, MessagesComeWholeHoweverTheyAreCut) {
    write("sil");
    EXPECT_TRUE(received.empty());
    write("ent\nobeyed rest\nreporting 1");
    write("2\n");
    EXPECT_EQ(received,
              (std::vector<window::Message>{window::Silent{}, window::Obeyed{"rest"}, window::Reporting{12}}));
}

TEST_F(SimulatorLinkTest, MalformedLinesAreIgnored) {
    write("nonsense\n\nreport x y\n" + std::string(20'000, 'x'));
    write("\nsilent\n");
    EXPECT_EQ(received, std::vector<window::Message>{window::Silent{}});
}

TEST_F(SimulatorLinkTest, TheEndOfTheLaptopIsTold) {
    messages.writeEnd.reset();
    QApplication::processEvents();
    EXPECT_TRUE(ended);
}

TEST_F(SimulatorLinkTest, CommandsGoALineEach) {
    link.send("slap 0.6");
    link.send("rest");
    std::array<char, 100> bytes = {};
    ASSERT_EQ(::read(commands.readEnd.get(), bytes.data(), bytes.size()), 14);
    EXPECT_STREQ(bytes.data(), "slap 0.6\nrest\n");
}

TEST_F(SimulatorLinkTest, ALaptopThatDoesNotReadOrIsGoneHoldsNothingUp) {
    for (int count = 0; count < 20'000; ++count) link.send("slap 0.6");
    commands.readEnd.reset();
    link.send("slap 0.6");
}

} // namespace
} // namespace quiverly
