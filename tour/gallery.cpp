// Writes a picture of every state of the window, in every look, into the folder given.

#include <chrono>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QFont>
#include <QPainter>
#include <QTest>
#include <QVariantAnimation>

#include "engine/BonkoEngine.h"
#include "platform/virtual/VirtualPlatform.h"
#include "platform/virtual/sensor_report.h"
#include "ui/ContentView.h"
#include "ui/OnboardingView.h"
#include "ui/Theme.h"

namespace quiverly {
namespace {

std::filesystem::path folder;

// What the user has asked of every program.
struct Look {
    std::string name;
    bool dark = false;
    bool highContrast = false;
    double fontSize = 11.0; // points
};

const std::vector<Look> looks = {
    {.name = "light"},
    {.name = "dark", .dark = true},
    {.name = "light-high-contrast", .highContrast = true},
    {.name = "dark-high-contrast", .dark = true, .highContrast = true},
    {.name = "large", .fontSize = 24.0},
};

std::string lookName; // of the moment

void put(const Look& look) {
    lookName = look.name;
    Theme::current().prefer({.dark = look.dark, .highContrast = look.highContrast});
    QFont font = QApplication::font();
    font.setPointSizeF(look.fontSize);
    QApplication::setFont(font);
    QApplication::processEvents();
}

// A virtual laptop, and what happens to it and to the window on it.
class Laptop {
public:
    VirtualPlatform platform;

    Laptop() { platform.registry.connectAccelerometer(); }

    void removeSensor() { platform.registry.services = {VirtualService::driver()}; }

    // Runs the jobs and events that wait, until none is left.
    void settle() {
        do platform.mainQueue.drain();
        while (QAbstractEventDispatcher::instance()->processEvents(QEventLoop::AllEvents));
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    void pass(double seconds) {
        platform.calendar.advance(std::chrono::nanoseconds(std::llround(seconds * 1e9)));
        platform.mainQueue.advance(seconds);
        settle();
    }

    // The first sample of all is a slap of 1 g.
    void rest() {
        feel(1.0);
        settle();
    }

    void hit(double amplitude) { // g
        pass(1.0);
        feel(1.0 + amplitude);
        feel(1.0);
        settle();
    }

private:
    // One sample, from the eight reports of which the reader keeps one.
    void feel(double magnitude) {
        for (int count = 0; count < 8; ++count) platform.registry.deliver(sensorReport(0, 0, magnitude));
    }
};

void save(const QImage& image, const std::filesystem::path& file) {
    if (!image.save(QString::fromStdString(file.string())))
        throw std::runtime_error(file.string() + " cannot be written");
}

void picture(QWidget& view, const std::string& name) {
    const auto file = folder / (name + '-' + lookName + ".png");
    view.setPalette(Theme::current().palette());
    save(view.grab().toImage(), file);
}

void awaitEndOfAnimation(const QWidget& view) {
    const auto ended = [&] { return view.findChildren<QVariantAnimation*>().isEmpty(); };
    if (!QTest::qWaitFor(ended, 60'000)) throw std::runtime_error("an animation does not end");
}

void mainView(const std::string& name, const std::function<void(Laptop&, BonkoEngine&)>& act, bool logo = true) {
    Laptop laptop;
    if (logo) laptop.platform.resources.folders = {QUIVERLY_IMAGES};
    BonkoEngine engine;
    engine.soundEnabled = true;
    ContentView view(engine);
    view.resize(QSize(420, 560).expandedTo(view.minimumSizeHint()));
    view.show();
    act(laptop, engine);
    laptop.settle();
    picture(view, name);
}

// The view with the keyboard at a control, so many presses of Tab from the first.
void mainViewWithFocus(const std::string& name, int presses) {
    Laptop laptop;
    laptop.platform.resources.folders = {QUIVERLY_IMAGES};
    BonkoEngine engine;
    engine.soundEnabled = true;
    ContentView view(engine);
    view.resize(QSize(420, 560).expandedTo(view.minimumSizeHint()));
    view.show();
    view.activateWindow();
    laptop.settle();
    view.setFocus();
    QTest::keyClick(&view, Qt::Key_Home); // the keyboard is in use
    for (int count = 0; count < presses; ++count) QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    laptop.settle();
    picture(view, name);
    QTest::mouseClick(&view, Qt::LeftButton, {}, {1, 1}); // no longer
}

void onboarding(const std::string& name, const std::function<void(Laptop&, BonkoEngine&)>& act, bool logo = true,
                bool sensor = true) {
    Laptop laptop;
    if (logo) laptop.platform.resources.folders = {QUIVERLY_IMAGES};
    if (!sensor) laptop.removeSensor();
    BonkoEngine engine;
    OnboardingView view(engine);
    view.show();
    act(laptop, engine);
    laptop.settle();
    awaitEndOfAnimation(view);
    picture(view, name);
    view.hide();
}

// Both views, light and dark, side by side: what the documentation shows.
void summary() {
    std::vector<QImage> windows;
    for (const char* name :
         {"main-listening-light", "main-idle-dark", "onboarding-waiting-light", "onboarding-complete-dark"}) {
        windows.emplace_back(QString::fromStdString((folder / name).string() + ".png"));
    }
    QImage together(4 * windows[0].width(), windows[0].height(), QImage::Format_RGB32);
    QPainter painter(&together);
    int x = 0;
    for (QImage& window : windows) {
        window.setDevicePixelRatio(1);
        painter.drawImage(x, 0, window);
        x += window.width();
    }
    painter.end();
    save(together, folder / "windows.png");
}

void everyState() {
    const auto nothing = [](Laptop&, BonkoEngine&) {};
    const auto check = [](Laptop& laptop, BonkoEngine&) { laptop.pass(0.6); };

    mainView("main-idle", nothing);
    mainView("main-listening", [](Laptop& laptop, BonkoEngine& engine) {
        engine.pack = SoundPack::halo;
        engine.start();
        laptop.rest();
        for (const double amplitude : {0.4, 0.2567}) laptop.hit(amplitude);
    });
    mainView("main-error", [](Laptop& laptop, BonkoEngine& engine) {
        laptop.removeSensor();
        engine.start();
    });
    mainView("main-long-error", [](Laptop& laptop, BonkoEngine& engine) {
        laptop.platform.registry.services.back().openResult = hid::notPermitted;
        engine.start();
    });
    mainView("main-picker-disabled", [](Laptop&, BonkoEngine& engine) { engine.soundEnabled = false; });
    mainView("main-no-logo", nothing, false);
    mainViewWithFocus("main-focus-on-picker", 0);
    mainViewWithFocus("main-focus-on-slider", 1);
    mainViewWithFocus("main-focus-on-button", 2);

    onboarding("onboarding-checking", nothing);
    onboarding("onboarding-waiting", check);
    onboarding("onboarding-failed", check, true, false);
    onboarding("onboarding-complete", [](Laptop& laptop, BonkoEngine&) {
        laptop.rest();
        laptop.pass(2.0);
        laptop.hit(0.5);
    });
    onboarding("onboarding-no-logo", nothing, false);
}

void everyPicture() {
    std::filesystem::create_directories(folder);
    for (const Look& look : looks) {
        put(look);
        everyState();
    }
    summary();
}

} // namespace
} // namespace quiverly

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s FOLDER\n", argv[0]);
        return 2;
    }
    quiverly::folder = argv[1];
    try {
        quiverly::everyPicture();
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        return 1;
    }
    return 0;
}
