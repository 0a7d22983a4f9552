#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <exception>
#include <functional>

namespace quiverly {

// Part of a test that happens in a process of its own, a copy of this one. What fails there fails the test.
class OtherProcess {
public:
    explicit OtherProcess(const std::function<void()>& actions) {
        std::fflush(nullptr);
        process = ::fork();
        if (process == 0) ::_exit(statusOf(actions)); // what is left is of threads that a copy does not have
    }
    ~OtherProcess() {
        int status = 0;
        EXPECT_EQ(::waitpid(process, &status, 0), process);
        EXPECT_EQ(status, 0);
    }
    OtherProcess(const OtherProcess&) = delete;
    OtherProcess& operator=(const OtherProcess&) = delete;

private:
    // 0 when nothing fails during the actions; what failed before them, in the process that was copied, does not count.
    static int statusOf(const std::function<void()>& actions) {
        const auto& result = *testing::UnitTest::GetInstance()->current_test_info()->result();
        int part = result.total_part_count();
        try {
            actions();
        } catch (const std::exception& exception) {
            ADD_FAILURE() << exception.what();
        }
        std::fflush(nullptr);
        while (part < result.total_part_count()) {
            if (result.GetTestPartResult(part++).failed()) return 1;
        }
        return 0;
    }

    pid_t process;
};

} // namespace quiverly
