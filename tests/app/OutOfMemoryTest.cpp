#include "app/out_of_memory.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <new>
#include <stdexcept>
#include <string>
#include <thread>

namespace quiverly {
namespace {

std::string line() {
    return "^" + std::string(program_invocation_short_name) + ": There is not enough memory.\n$";
}

[[noreturn]] void runOut() {
    throw std::bad_alloc();
}

TEST(OutOfMemoryTest, EndsTheProgramWithOneLineAndStatus1) {
    EXPECT_EXIT(
        {
            endWithoutMemory();
            []() noexcept { runOut(); }();
        },
        testing::ExitedWithCode(1), line());
}

TEST(OutOfMemoryTest, OnAnotherThreadItDoesTheSame) {
    EXPECT_EXIT(
        {
            endWithoutMemory();
            std::thread(runOut).join();
        },
        testing::ExitedWithCode(1), line());
}

TEST(OutOfMemoryTest, OtherExceptionsAbortAsBefore) {
    EXPECT_EXIT(
        {
            endWithoutMemory();
            std::thread([] { throw std::runtime_error("something else"); }).join();
        },
        testing::KilledBySignal(SIGABRT), "something else");
}

} // namespace
} // namespace quiverly
