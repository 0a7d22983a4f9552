#pragma once

#include <functional>
#include <string>
#include <vector>

#include <QMainWindow>

#include "tools/simulate/Command.h"
#include "tools/simulate/WindowMessage.h"
#include "tools/simulate/window/ApplicationDetector.h"

class QLayout;

namespace quiverly {

class ActionButton;
class Label;
class LaptopView;
class StatusPill;
class Strip;

// The window of the simulated laptop: the laptop, what the application's detector makes of it, and buttons for what can
// be done to it. It shows what the simulated laptop tells, and sends it commands.
class LaptopWindow {
public:
    std::function<void(const QByteArray& command)> onCommand;

    explicit LaptopWindow(VirtualPlatform& platform); // which outlives it

    QMainWindow& window() { return frame; }
    void show(); // at its place, where the desktop lets a window choose

    void tell(const window::Message& message);
    void setThreshold(double threshold); // g

private:
    QLayout* column();
    QLayout* actions();
    void addSlapKeys();
    ActionButton* action(const QString& label, const std::function<void()>& onClick);
    void send(const QByteArray& line);

    void take(const window::Report& report);
    void take(const window::Dropped& dropped);
    void take(const window::Reporting& reporting);
    void take(const window::Silent&);
    void take(const window::Obeyed& obeyed);
    void take(const window::Problem& problem);
    void remember(const command::Command& command);
    void announce(double amplitude);
    void refresh();

    QMainWindow frame;
    ApplicationDetector detector;
    StatusPill* pill;
    Label* state;
    LaptopView* laptop;
    Label* said;
    Strip* strip;
    ActionButton* typing = nullptr;
    ActionButton* walking = nullptr;
    ActionButton* tilting = nullptr;
    ActionButton* sensor = nullptr;
    ActionButton* permission = nullptr;
    bool isReporting = false;
    bool isAsleep = false;
    bool isPluggedIn = true;
    bool isPermitted = true;
};

} // namespace quiverly
