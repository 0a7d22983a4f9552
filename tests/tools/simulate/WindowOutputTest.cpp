#include "tools/simulate/WindowOutput.h"

#include <gtest/gtest.h>
#include <poll.h>

#include <array>
#include <csignal>
#include <variant>
#include <vector>

#include "sockets/input.h"
#include "support/Pipe.h"

namespace quiverly {
namespace {

constexpr std::array<std::uint8_t, 22> report = {0x01, 0xA5};

// The window's end of the pipe.
class WindowOutputTest : public testing::Test {
protected:
    WindowOutputTest() { std::signal(SIGPIPE, SIG_IGN); } // as the program does

    bool isEmpty() const {
        pollfd input = inputOf(pipe.readEnd.get());
        return !waitForInput({&input, 1}, std::chrono::nanoseconds(0));
    }

    // Takes all that the pipe holds.
    std::string take() const {
        std::string text;
        std::array<char, 65536> bytes; // NOLINT: filled by the next call
        while (!isEmpty()) {
            const ssize_t length = ::read(pipe.readEnd.get(), bytes.data(), bytes.size());
            if (length <= 0) break;
            text.append(bytes.data(), static_cast<std::size_t>(length));
        }
        return text;
    }

    static std::vector<window::Message> parsed(const std::string& text) {
        std::vector<window::Message> messages;
        for (std::size_t begin = 0; begin < text.size(); begin = text.find('\n', begin) + 1) {
            const auto message = window::parse(std::string_view(text).substr(begin, text.find('\n', begin) - begin));
            EXPECT_TRUE(message);
            if (message) messages.push_back(*message);
        }
        return messages;
    }

    Pipe pipe;
    WindowOutput output{std::move(pipe.writeEnd)};
};

TEST_F(WindowOutputTest, ReportsGoInLots) {
    for (std::size_t count = 1; count < WindowOutput::lot; ++count) output.report(1, report);
    EXPECT_TRUE(isEmpty());
    output.report(2, report);
    const auto messages = parsed(take());
    ASSERT_EQ(messages.size(), WindowOutput::lot);
    EXPECT_EQ(messages.back(), (window::Message(window::Report{2, {report.begin(), report.end()}})));
}

TEST_F(WindowOutputTest, AnythingElseGoesAtOnceBehindTheReportsBeforeIt) {
    output.report(1, report);
    output.tell(window::Silent{});
    const auto messages = parsed(take());
    ASSERT_EQ(messages.size(), 2U);
    EXPECT_TRUE(std::holds_alternative<window::Report>(messages[0]));
    EXPECT_TRUE(std::holds_alternative<window::Silent>(messages[1]));
}

TEST_F(WindowOutputTest, WhatAWindowDoesNotReadIsKeptThenDroppedAndCounted) {
    constexpr std::uint64_t sent = 50'000;
    for (std::uint64_t count = 0; count < sent; ++count) output.report(1, report);
    output.tell(window::Obeyed{"rest"});
    std::uint64_t received = 0;
    std::uint64_t dropped = 0;
    bool obeyed = false;
    std::string text;
    for (std::string more = take(); !more.empty(); more = take()) {
        text += more;
        output.flush();
    }
    for (const auto& message : parsed(text)) {
        if (std::holds_alternative<window::Report>(message)) ++received;
        if (const auto* gap = std::get_if<window::Dropped>(&message)) dropped += gap->reports;
        if (message == window::Message(window::Obeyed{"rest"})) obeyed = true;
    }
    EXPECT_GT(dropped, 0U);
    EXPECT_GT(received, WindowOutput::mostKept / 100);
    EXPECT_EQ(received + dropped, sent);
    EXPECT_TRUE(obeyed);
}

TEST_F(WindowOutputTest, ThereIsRoomToWaitForOnlyWhileThePipeHasNotTakenAll) {
    output.report(1, report);
    EXPECT_LT(output.room().fd, 0);
    while (output.room().fd < 0) output.tell(window::Silent{});
    pollfd room = output.room();
    EXPECT_FALSE(waitForInput({&room, 1}, std::chrono::nanoseconds(0)));
    take();
    EXPECT_TRUE(waitForInput({&room, 1}, std::chrono::nanoseconds(0)));
    output.flush();
    EXPECT_LT(output.room().fd, 0);
    EXPECT_TRUE(std::string("silent\n").ends_with(take()));
}

TEST_F(WindowOutputTest, AWindowThatIsGoneDoesNotMatter) {
    pipe.readEnd.reset();
    for (std::size_t count = 0; count < 3 * WindowOutput::lot; ++count) output.report(1, report);
    output.tell(window::Silent{});
}

} // namespace
} // namespace quiverly
