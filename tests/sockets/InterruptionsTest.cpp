#include "sockets/interruptions.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>

#include "sockets/input.h"
#include "support/OtherProcess.h"

namespace quiverly {
namespace {

using namespace std::chrono_literals;

TEST(InterruptionsTest, ASignalThatAsksForTheEndCanBeReadInsteadOfEndingTheProgram) {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        const OtherProcess process([&] {
            const FileDescriptor ends = interruptions();
            auto input = inputOf(ends.get());
            EXPECT_FALSE(waitForInput({&input, 1}, 0s));
            ::raise(signal);
            EXPECT_TRUE(waitForInput({&input, 1}, 0s));
        });
    }
}

TEST(InterruptionsTest, WritingIntoAClosedPipeFailsInsteadOfEndingTheProgram) {
    const OtherProcess process([] {
        const FileDescriptor ends = interruptions();
        std::array<int, 2> pipe = {};
        ASSERT_EQ(::pipe(pipe.data()), 0);
        ::close(pipe[0]);
        EXPECT_EQ(::write(pipe[1], "x", 1), -1);
        EXPECT_EQ(errno, EPIPE);
    });
}

} // namespace
} // namespace quiverly
