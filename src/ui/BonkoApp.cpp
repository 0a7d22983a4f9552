#include "ui/BonkoApp.h"

#include <variant>

#include <QPointer>
#include <QShortcut>

#include "platform/defaults.h"
#include "platform/main_queue.h"
#include "ui/AppImages.h"
#include "ui/ContentView.h"
#include "ui/OnboardingView.h"
#include "ui/Theme.h"
#include "ui/controls/accessibility.h"

namespace quiverly {

namespace {

constexpr char completedKey[] = "bonko.onboardingCompleted"; // a number, not 0 once onboarding is completed

bool onboardingIsCompleted() {
    const auto stored = defaults::object(completedKey);
    const double* number = stored ? std::get_if<double>(&*stored) : nullptr;
    return number && *number != 0;
}

} // namespace

BonkoApp::BonkoApp() {
    window.setWindowTitle("Quiverly");
    describeAs(window, QAccessible::Window);
    window.setContextMenuPolicy(Qt::NoContextMenu);
    QObject::connect(&Theme::current(), &Theme::changed, &window, [this] { applyPalette(); });
    applyPalette();
    showContent();
    window.resize(420, 560);
}

BonkoApp::~BonkoApp() {
    window.hide();
}

void BonkoApp::show() {
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    window.show();
    window.raise();
    window.activateWindow();
    if (!window.windowIcon().isNull()) return;
    mainQueue::post([window = QPointer(&window)] { // while the display opens the window
        if (window) window->setWindowIcon(windowIcon());
    });
}

void BonkoApp::minimize() {
    if (window.isVisible()) window.showMinimized();
}

void BonkoApp::close() {
    window.close();
}

void BonkoApp::closeOn(const QKeySequence& keys) {
    QObject::connect(new QShortcut(keys, &window), &QShortcut::activated, &window, &QWidget::close);
}

void BonkoApp::showContent() {
    if (QWidget* previous = window.takeCentralWidget()) {
        previous->hide();
        previous->deleteLater();
    }
    View* view = onboardingIsCompleted() ? makeContentView() : makeOnboardingView();
    window.setCentralWidget(view);
    window.setMaximumSize(view->maximumSize()); // the layout sees to the minimum
}

View* BonkoApp::makeOnboardingView() {
    auto* view = new OnboardingView(engine);
    view->onContinue = [this] {
        defaults::setNumber(completedKey, 1);
        showContent();
    };
    return view;
}

View* BonkoApp::makeContentView() {
    auto* view = new ContentView(engine);
    view->onAppear = [this, view] {
        engine.soundEnabled = true;
        mainQueue::post([view = QPointer(view)] { // when it has read the engine, and the picker can be used
            if (view) view->setFocus();
        });
    };
    return view;
}

void BonkoApp::applyPalette() {
    window.setPalette(Theme::current().palette());
}

} // namespace quiverly
