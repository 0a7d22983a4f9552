#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <functional>

namespace quiverly {

// Part of a test that happens in a process of its own, a copy of this one. What fails there fails the test.
class OtherProcess {
public:
    explicit OtherProcess(const std::function<void()>& actions) {
        std::fflush(nullptr);
        process = ::fork();
        if (process != 0) return;
        actions();
        std::fflush(nullptr);
        ::_exit(testing::Test::HasFailure() ? 1 : 0); // what is left is of threads that a copy does not have
    }
    ~OtherProcess() {
        int status = 0;
        EXPECT_EQ(::waitpid(process, &status, 0), process);
        EXPECT_EQ(status, 0);
    }
    OtherProcess(const OtherProcess&) = delete;
    OtherProcess& operator=(const OtherProcess&) = delete;

private:
    pid_t process;
};

} // namespace quiverly
