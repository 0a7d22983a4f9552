#pragma once

#include <grp.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <functional>

#include "support/OtherProcess.h"

namespace quiverly {

// An ordinary user, whom the system refuses what the superuser may do. Tests that run as the superuser can act as this
// user; other tests already run as an ordinary user.
namespace another_user {

inline constexpr uid_t id = 65534; // nobody on Linux

inline bool isPossible() {
    return ::geteuid() == 0;
}

// Gives that user the folder and all that is in it.
inline void give(const std::filesystem::path& folder) {
    if (!isPossible()) return;
    ASSERT_EQ(::lchown(folder.c_str(), id, id), 0);
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        ASSERT_EQ(::lchown(entry.path().c_str(), id, id), 0);
    }
}

// Does that in a process of that user. What fails there fails the test.
inline void act(const std::function<void()>& actions) {
    const OtherProcess process([&] {
        if (isPossible()) {
            ASSERT_EQ(::setgroups(0, nullptr), 0);
            ASSERT_EQ(::setgid(id), 0);
            ASSERT_EQ(::setuid(id), 0);
        }
        actions();
    });
}

} // namespace another_user

} // namespace quiverly
