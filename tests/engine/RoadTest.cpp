#include <gtest/gtest.h>

#include "engine/BonkoEngine.h"
#include "platform/virtual/VirtualPlatform.h"
#include "platform/virtual/sensor_report.h"
#include "support/ReportFlow.h"
#include "support/TemporaryFolder.h"
#include "support/Waiting.h"

namespace quiverly {
namespace {

TEST(RoadTest, AReportBecomesASoundingClip) {
    VirtualPlatform platform;
    platform.registry.connectAccelerometer();
    const TemporaryFolder resources;
    resources.addFile("audio/sexy/1.mp3");
    platform.resources.folders = {resources.path()};

    BonkoEngine engine;
    engine.soundEnabled = true;
    engine.start();
    ASSERT_TRUE(engine.isRunning());
    for (int count = 0; count < 8; ++count) EXPECT_TRUE(platform.registry.deliver(sensorReport(0, 0, 1.0)));
    platform.mainQueue.drain();

    EXPECT_EQ(engine.slapCount, 1);
    ASSERT_EQ(platform.audio.sounding().size(), 1U);
    EXPECT_EQ(platform.audio.sounding()[0].file.filename(), "1.mp3");
    EXPECT_EQ(platform.audio.sounding()[0].volume, 1.0F);
}

TEST(RoadTest, TheEngineMayGoWhileItsSensorThreadStillQueuesSamples) {
    VirtualPlatform platform;
    platform.registry.connectAccelerometer();
    platform.threads.real = true;
    const ReportFlow flow(platform);
    for (int round = 0; round < 50; ++round) {
        BonkoEngine engine;
        engine.start();
        ASSERT_TRUE(engine.isRunning());
        ASSERT_TRUE(waitUntil([&] {
            platform.mainQueue.drain();
            return engine.slapCount == 1; // the first sample
        }));
    }
    platform.mainQueue.drain();
    EXPECT_FALSE(platform.registry.deviceIsOpen());
}

} // namespace
} // namespace quiverly
