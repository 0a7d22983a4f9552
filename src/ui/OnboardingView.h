#pragma once

#include <array>
#include <functional>
#include <memory>
#include <vector>

#include "engine/BonkoEngine.h"
#include "ui/EngineObserver.h"
#include "ui/View.h"
#include "ui/controls/StatusLine.h"

class QLayout;

namespace quiverly {

class PushButton;
class ScrollArea;
class StepList;

// What a new user sees first: a welcome, and a check that the sensor works and feels one test slap.
//
// Appearing begins the check anew; disappearing ends it and stops the engine.
class OnboardingView : public View {
public:
    explicit OnboardingView(BonkoEngine& engine); // the engine outlives the view

    std::function<void()> onContinue; // called when the check is complete and the user continues

private:
    void keyPressEvent(QKeyEvent* event) override;

    QWidget* welcomeAndSteps();
    QLayout* welcomeBlock();
    QWidget* hardwareBody();

    void resetHardwareState();
    void beginHardwareCheck();
    void endHardwareCheck();
    void judgeAccelerometer();
    void feelTestSlap();

    void refresh();
    void refreshLines();
    void refreshContinue();
    std::vector<StatusLine::Status> hardwareStatus() const;

    BonkoEngine& engine;
    int step = 1;
    bool accelOK = false;
    bool slapOK = false;
    bool waitingForSlap = true;
    std::shared_ptr<const bool> alive =
        std::make_shared<const bool>(true); // goes with the view; the verdict watches it

    std::array<StatusLine*, 4> lines{};
    StepList* steps;
    ScrollArea* area;
    PushButton* continueButton;
    EngineObserver observer;
};

} // namespace quiverly
