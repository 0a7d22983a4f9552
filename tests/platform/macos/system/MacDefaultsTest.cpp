#include <gtest/gtest.h>

#include <variant>

#include "platform/defaults.h"
#include "support/Mac.h"

namespace quiverly {
namespace {

constexpr char key[] = "quiverly.test";

class MacDefaultsTest : public testing::Test {
protected:
    MacDefaultsTest() { Mac::forget(key); }
    ~MacDefaultsTest() override { Mac::forget(key); }

    Mac mac;
};

TEST_F(MacDefaultsTest, WhatWasNeverStoredIsNone) {
    EXPECT_EQ(defaults::text(key), std::nullopt);
    EXPECT_FALSE(defaults::object(key).has_value());
}

TEST_F(MacDefaultsTest, ATextIsReadBackAsThatText) {
    for (const char* text : {"halo", "", "0.2", "Ärger 悲鳴 🦎"}) {
        defaults::setText(key, text);
        EXPECT_EQ(defaults::text(key), text);
        EXPECT_EQ(std::get<std::string>(defaults::object(key).value()), text);
    }
}

TEST_F(MacDefaultsTest, ANumberIsReadBackToTheBitAndCanBeReplaced) {
    for (const double number : {0.12, 0.1 + 0.2, 1.0, 0.0, -1e300}) {
        defaults::setNumber(key, number);
        EXPECT_EQ(std::get<double>(defaults::object(key).value()), number);
    }
    defaults::setText(key, "halo");
    EXPECT_EQ(defaults::text(key), "halo");
}

} // namespace
} // namespace quiverly
