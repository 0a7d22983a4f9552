#pragma once

#include <chrono>
#include <utility>

#include "platform/virtual/sensor_report.h"
#include "support/EngineTest.h"

namespace quiverly {

// An engine that has been built on an empty store, with its real reader, on a laptop that is felt and hit.
class BuiltEngineTest : public EngineTest {
protected:
    BuiltEngineTest() { build(); }

    // Ends the engine, and builds another in its very place.
    void rebuild() {
        engine.reset();
        build();
    }

    // One sample, from eight reports of that magnitude in g. It arrives at the main queue and waits there.
    void feelSample(double magnitude) {
        for (int count = 0; count < 8; ++count) {
            ASSERT_TRUE(platform.registry.deliver(sensorReport(0, 0, magnitude)));
        }
    }

    // Starts, and has the detector see its first sample at a time when no slap is due yet: it would take it for one.
    void listen() {
        const auto now = std::exchange(platform.calendar.now, calendar::distantPast);
        engine->start();
        feelSample(1.0);
        platform.mainQueue.drain();
        platform.calendar.now = now;
    }

    // The resting laptop is hit so that the detector scores that amplitude, a multiple of 1/65536 g. Both samples wait.
    void hit(double amplitude) {
        feelSample(1.0 + amplitude);
        feelSample(1.0);
    }

    // A second later it is hit, and what follows from that is done.
    void slap(double amplitude) {
        platform.calendar.advance(std::chrono::seconds(1));
        hit(amplitude);
        platform.mainQueue.drain();
    }

    // Whether a hit becomes a slap that counts.
    bool counts(double amplitude) {
        const auto before = engine->slapCount.get();
        slap(amplitude);
        return engine->slapCount == before + 1;
    }

    void expectDetectorThreshold(double threshold) {
        EXPECT_FALSE(counts(threshold - 0.0001)) << "the threshold is not " << threshold << " but less";
        EXPECT_TRUE(counts(threshold + 0.0001)) << "the threshold is not " << threshold << " but more";
    }

    // The folder of the clip that answers a slap.
    std::string packThatAnswers() {
        engine->soundEnabled = true;
        played.clear();
        slap(0.5);
        return played.empty() ? "silence" : played.front().substr(0, played.front().find('/'));
    }

    // What sounded since the last time.
    Texts takePlayed() { return std::exchange(played, {}); }

    // Whether the reader holds the sensor open, once its thread has had a turn.
    bool sensorIsOpen() {
        platform.threads.turn();
        return platform.registry.deviceIsOpen();
    }
};

} // namespace quiverly
