#include "support/ChildProcess.h"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

namespace quiverly {
namespace {

TEST(ChildProcessTest, TheWaitForAProgramThatDoesNotEndHasAnEnd) {
    ChildProcess endless({"sleep", "infinity"}, ChildProcess::Streams{});
    int status = 0;
    EXPECT_NONFATAL_FAILURE(status = endless.wait(std::chrono::seconds(0)), "the program does not end");
    EXPECT_EQ(status, -1);
    EXPECT_FALSE(endless.isRunning());
}

TEST(ChildProcessTest, TheWaitYieldsTheExitStatus) {
    ChildProcess failing({"sh", "-c", "exit 7"}, ChildProcess::Streams{});
    EXPECT_EQ(failing.wait(), 7);
}

} // namespace
} // namespace quiverly
