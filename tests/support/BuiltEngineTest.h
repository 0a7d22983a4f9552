#pragma once

#include <utility>

#include "engine/Inspector.h"
#include "platform/virtual/sensor_report.h"
#include "support/EngineTest.h"

namespace quiverly {

// An engine that has been built on an empty store, with its real reader, and what one does to it.
class BuiltEngineTest : public EngineTest {
protected:
    BuiltEngineTest() { build(); }

    // Eight reports, so that one sample arrives at the main queue.
    void feelSample(double magnitude) {
        for (int count = 0; count < 8; ++count) ASSERT_TRUE(platform.registry.deliver(sensorReport(0, 0, magnitude)));
    }

    // A slap as the detector tells it, handled at once.
    void slap(double amplitude) {
        detector().onSlap(amplitude);
        platform.mainQueue.drain();
    }

    // What sounded since the last time.
    Texts takePlayed() { return std::exchange(played, {}); }

    SlapDetector& detector() { return Inspector::detector(*engine); }
    SoundPlayer& soundPlayer() { return Inspector::soundPlayer(*engine); }
    SoundPack loadedPack() { return Inspector::pack(soundPlayer()); }
    std::size_t loadedClips() { return Inspector::files(soundPlayer()).size(); }
};

} // namespace quiverly
