#include "tools/simulate/CommandInput.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

#include "support/Pipe.h"
#include "support/Waiting.h"

namespace quiverly {
namespace {

using Lines = std::vector<std::string>;

// Commands that come in through a pipe.
class CommandInputTest : public testing::Test {
protected:
    void write(const std::string& text) const {
        EXPECT_EQ(::write(pipe.writeEnd.get(), text.data(), text.size()), std::ssize(text));
    }

    Pipe pipe{O_NONBLOCK};
    CommandInput input{pipe.readEnd.get()};
};

TEST_F(CommandInputTest, LinesComeWholeHoweverTheyAreCut) {
    write("rest\n\nsl");
    EXPECT_EQ(input.read(), (Lines{"rest", ""}));
    write("ap 1");
    EXPECT_EQ(input.read(), Lines{});
    write("\nquit");
    EXPECT_EQ(input.read(), Lines{"slap 1"});
}

TEST_F(CommandInputTest, TheEndOfTheInputEndsTheLastLineAndNothingIsAwaitedAfterIt) {
    write("quit");
    EXPECT_EQ(input.read(), Lines{});
    EXPECT_EQ(input.descriptor(), pipe.readEnd.get());
    pipe.writeEnd.reset();
    EXPECT_EQ(input.read(), Lines{"quit"});
    EXPECT_EQ(input.descriptor(), -1);
    EXPECT_EQ(input.pause(), std::nullopt);
}

TEST_F(CommandInputTest, OfALineThatIsTooLongThereIsOneByteTooMany) {
    write(std::string(1000, 'x') + '\n' + std::string(1001, 'x') + '\n' + std::string(2000, 'x') + "\nrest\n");
    EXPECT_EQ(input.read(), (Lines{std::string(1000, 'x'), std::string(1001, 'x'), std::string(1001, 'x'), "rest"}));
}

TEST_F(CommandInputTest, AfterAReadThatFailsThereIsAPauseAndThenMore) {
    write("sl");
    EXPECT_EQ(input.read(), Lines{});
    EXPECT_EQ(input.read(), Lines{}); // would have to wait
    EXPECT_EQ(input.descriptor(), -1);
    EXPECT_GT(input.pause().value_or(std::chrono::seconds(0)), std::chrono::seconds(0));
    EXPECT_LE(input.pause().value_or(std::chrono::seconds(2)), std::chrono::seconds(1));

    EXPECT_TRUE(waitUntil([&] { return !input.pause(); }));
    EXPECT_EQ(input.descriptor(), pipe.readEnd.get());
    write("ap 1\n");
    EXPECT_EQ(input.read(), Lines{"slap 1"});
}

} // namespace
} // namespace quiverly
