#include "engine/FakeAccelerometerReader.h"
#include "support/EngineTest.h"

namespace quiverly {
namespace {

// What the engine asks of its reader, and what it makes of the answers.
class BonkoEngineReaderTest : public EngineTest {
protected:
    BonkoEngineReaderTest() { build(); }

    void failWith(std::optional<std::string> message) {
        reader.starts = false;
        reader.message = std::move(message);
    }

    FakeReader& reader = FakeReader::current();
};

TEST_F(BonkoEngineReaderTest, BuildingTheEngineCallsNeitherStartNorStop) {
    EXPECT_EQ(reader.startCalls, 0);
    EXPECT_EQ(reader.stopCalls, 0);
}

TEST_F(BonkoEngineReaderTest, StartWhileListeningDoesNotCallTheReader) {
    engine->start();
    engine->start();
    EXPECT_EQ(reader.startCalls, 1);
    EXPECT_EQ(reader.stopCalls, 0);
}

TEST_F(BonkoEngineReaderTest, BeginningACheckStartsTheReaderUnlessTheEngineListens) {
    engine->beginHardwareCheck([](double) {});
    EXPECT_EQ(reader.startCalls, 1);
    engine->beginHardwareCheck([](double) {});
    EXPECT_EQ(reader.startCalls, 1);
    engine->endHardwareCheck();
    EXPECT_EQ(reader.stopCalls, 0);
}

TEST_F(BonkoEngineReaderTest, EveryStartInErrorCallsTheReaderAgain) {
    failWith("no");
    for (int count = 0; count < 3; ++count) engine->start();
    EXPECT_EQ(reader.startCalls, 3);
    EXPECT_EQ(openedPages.size(), 3U);
}

TEST_F(BonkoEngineReaderTest, AReaderThatFailsWithoutAMessageYieldsUnavailableAndOneRequestForThePage) {
    failWith(std::nullopt);
    engine->start();
    EXPECT_EQ(engine->phase.get(), (Phase{Kind::error, "Accelerometer unavailable"}));
    EXPECT_EQ(openedPages.size(), 1U);
}

TEST_F(BonkoEngineReaderTest, TheReadersMessageIsPassedOnVerbatim) {
    for (const std::string message : {"a → b & c.\n", "", "Accelerometer unavailable"}) {
        failWith(message);
        engine->start();
        EXPECT_EQ(engine->phase.get(), (Phase{Kind::error, message}));
    }
}

TEST_F(BonkoEngineReaderTest, StopOnAnIdleEngineStillCallsTheReadersStop) {
    engine->stop();
    engine->stop();
    EXPECT_EQ(reader.stopCalls, 2);
    EXPECT_EQ(engine->phase.get(), Phase{Kind::idle});
}

TEST_F(BonkoEngineReaderTest, StopInErrorCallsTheReadersStop) {
    failWith("no");
    engine->start();
    engine->stop();
    EXPECT_EQ(reader.stopCalls, 1);
    EXPECT_EQ(engine->phase.get(), Phase{Kind::idle});
}

TEST_F(BonkoEngineReaderTest, IsRunningIsTakenFromThePhaseAloneEvenIfTheReaderWereRunning) {
    EXPECT_FALSE(engine->isRunning());
    failWith("no");
    engine->start();
    EXPECT_FALSE(engine->isRunning());
    engine->stop();
    EXPECT_FALSE(engine->isRunning());
}

// The squares are added in the order of the axes: with x and z exchanged the sum would be two more.
TEST_F(BonkoEngineReaderTest, TheDetectorGetsTheAxesInTheirOrder) {
    reader.deliver(1e8, 1, 1);
    platform.mainQueue.drain();
    EXPECT_EQ(engine->lastAmplitude, 1e8);
    build();
    reader.deliver(1, 1, 1e8);
    platform.mainQueue.drain();
    EXPECT_GT(engine->lastAmplitude, 1e8);
}

TEST_F(BonkoEngineReaderTest, TheEndOfTheEngineDoesNotStopTheReader) {
    engine->start();
    engine.reset();
    EXPECT_EQ(reader.stopCalls, 0);
}

} // namespace
} // namespace quiverly
