#include <gtest/gtest.h>

#include <QApplication>

#include "platform/hid.h"
#include "support/MacWithoutSensor.h"
#include "support/Screen.h"
#include "support/Waiting.h"
#include "support/sensor_texts.h"
#include "ui/BonkoApp.h"

namespace quiverly {
namespace {

// The program from its start, as somebody has it whose Mac has no sensor.
class MacStartTest : public testing::Test {
protected:
    MacWithoutSensor mac;

    void SetUp() override {
        const auto services = hid::findServices(hid::matchingClass("AppleSPUHIDDevice"));
        if (services && hid::nextService(*services)) GTEST_SKIP() << "this Mac has a sensor, and would ask its user";
    }

    void turn() {
#ifndef __APPLE__
        mac.mainQueue.advance(0.1);
#endif
        QApplication::processEvents();
    }
};

TEST_F(MacStartTest, TheWindowSaysThatThereIsNoSensor) {
    BonkoApp app;
    app.show();
    waitUntil([this] {
        turn();
        return showsText(applicationWindow(), missing);
    });
}

} // namespace
} // namespace quiverly
