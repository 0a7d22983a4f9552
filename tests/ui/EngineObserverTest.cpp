#include "ui/EngineObserver.h"

#include <gtest/gtest.h>

#include <optional>

#include "engine/BonkoEngine.h"
#include "platform/virtual/VirtualPlatform.h"

namespace quiverly {
namespace {

class EngineObserverTest : public testing::Test {
protected:
    VirtualPlatform platform;
    BonkoEngine engine;
    int refreshes = 0;
    std::optional<EngineObserver> observer{std::in_place, engine.objectWillChange, [this] { ++refreshes; }};
};

TEST_F(EngineObserverTest, AnyNumberOfChangesIsReadOnceOnTheNextTurn) {
    engine.threshold = 0.2;
    engine.pack = SoundPack::halo;
    EXPECT_EQ(refreshes, 0);
    platform.mainQueue.drain();
    EXPECT_EQ(refreshes, 1);
    engine.threshold = 0.3;
    platform.mainQueue.drain();
    EXPECT_EQ(refreshes, 2);
}

TEST_F(EngineObserverTest, AnObserverThatDiesBeforeItsTurnReadsNothing) {
    engine.threshold = 0.2;
    observer.reset();
    platform.mainQueue.drain();
    EXPECT_EQ(refreshes, 0);
}

} // namespace
} // namespace quiverly
