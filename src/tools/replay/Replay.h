#pragma once

#include <cstdint>

#include "engine/BonkoEngine.h"
#include "platform/virtual/VirtualPlatform.h"
#include "tools/plot/Plot.h"
#include "tools/recording/RecordingLine.h"
#include "tools/replay/EventPrinter.h"

namespace quiverly {

// Runs an engine on a recording, on a virtual platform, prints what happens, and draws it into a plot if there
// is one.
//
// Settings, resources and chance of the platform are set up before; the sensor is there. When perform() returns, all
// that its line sets going is over: jobs have run and a device no longer listened to is closed.
class Replay {
public:
    enum class Samples { hidden, printed };

    Replay(VirtualPlatform& platform, EventPrinter& events, Samples samples, Plot* plot = nullptr);

    void perform(const RecordingLine& line);

    // Prints the totals, after the last line.
    void finish();

private:
    void watchSamples(Samples samples);
    void watchState();
    void watchPlatform();

    void carryOut(const action::Report& report);
    void carryOut(const action::Start&);
    void carryOut(const action::Stop&);
    void carryOut(const action::Sound& sound);
    void carryOut(const action::Pack& pack);
    void carryOut(const action::Threshold& threshold);
    void carryOut(const action::BeginCheck&);
    void carryOut(const action::EndCheck&);
    void carryOut(const action::ClockJump&);
    void carryOut(const action::Sensor& sensor);
    void printChanges();
    void plotSample();

    VirtualPlatform& platform;
    EventPrinter& events;
    Plot* const plot; // or null
    BonkoEngine engine;
    ChangePublisher::Subscription phaseWatcher;
    ChangePublisher::Subscription slapWatcher;
    double seconds = 0.0; // since the recording began
    double lastMagnitude = 0.0;
    bool firstLine = true;
    bool phaseWritten = false; // and not printed yet
    bool slapAccepted = false; // and not printed yet
    std::int64_t samples = 0;
    std::int64_t clips = 0;
};

} // namespace quiverly
