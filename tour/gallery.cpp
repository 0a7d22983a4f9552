// Writes a picture of every state of the window, light and dark, into the folder given.

#include <cstdio>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include <QApplication>
#include <QPainter>
#include <QVariantAnimation>

#include "support/Stage.h"
#include "support/SystemLooks.h"
#include "ui/ContentView.h"
#include "ui/OnboardingView.h"
#include "ui/Theme.h"

namespace quiverly {
namespace {

std::filesystem::path folder;

void save(const QImage& image, const std::filesystem::path& file) {
    if (!image.save(QString::fromStdString(file.string())))
        throw std::runtime_error(file.string() + " cannot be written");
}

void picture(QWidget& view, const std::string& name) {
    const auto file = folder / (name + (Theme::current().isDark() ? "-dark" : "-light") + ".png");
    view.setPalette(Theme::current().palette());
    save(view.grab().toImage(), file);
}

void awaitEndOfAnimation(const QWidget& view) {
    const auto ended = [&] { return view.findChildren<QVariantAnimation*>().isEmpty(); };
    if (!QTest::qWaitFor(ended, 60'000)) throw std::runtime_error("an animation does not end");
}

void mainView(const std::string& name, const std::function<void(Stage&, BonkoEngine&)>& act, bool logo = true) {
    Stage stage;
    if (logo) stage.platform.resources.folders = {QUIVERLY_IMAGES};
    BonkoEngine engine;
    engine.soundEnabled = true;
    ContentView view(engine);
    view.resize(420, 560);
    view.show();
    act(stage, engine);
    stage.settle();
    picture(view, name);
}

void onboarding(const std::string& name, const std::function<void(Stage&, BonkoEngine&)>& act, bool logo = true,
                bool sensor = true) {
    Stage stage;
    if (logo) stage.platform.resources.folders = {QUIVERLY_IMAGES};
    if (!sensor) stage.removeSensor();
    BonkoEngine engine;
    OnboardingView view(engine);
    view.show();
    act(stage, engine);
    stage.settle();
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
    mainView("main-idle", [](Stage&, BonkoEngine&) {});
    mainView("main-listening", [](Stage& stage, BonkoEngine& engine) {
        engine.pack = SoundPack::halo;
        engine.start();
        stage.rest(); // counts as a slap
        for (const double amplitude : {0.4, 0.2567}) stage.slap(amplitude);
    });
    mainView("main-error", [](Stage& stage, BonkoEngine& engine) {
        stage.removeSensor();
        engine.start();
    });
    mainView("main-long-error", [](Stage& stage, BonkoEngine& engine) {
        stage.platform.registry.services.back().openResult = hid::notPermitted;
        engine.start();
    });
    mainView("main-picker-disabled", [](Stage&, BonkoEngine& engine) { engine.soundEnabled = false; });
    mainView(
        "main-no-logo", [](Stage&, BonkoEngine&) {}, false);

    onboarding("onboarding-checking", [](Stage&, BonkoEngine&) {});
    onboarding("onboarding-waiting", [](Stage& stage, BonkoEngine&) { stage.pass(0.6); });
    onboarding(
        "onboarding-failed", [](Stage& stage, BonkoEngine&) { stage.pass(0.6); }, true, false);
    onboarding("onboarding-complete", [](Stage& stage, BonkoEngine&) {
        stage.rest();
        stage.pass(2.0);
        stage.slap(0.5);
    });
    onboarding(
        "onboarding-no-logo", [](Stage&, BonkoEngine&) {}, false);
}

void everyPicture() {
    std::filesystem::create_directories(folder);
    for (const bool dark : {false, true}) {
        setSystemDark(dark);
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
