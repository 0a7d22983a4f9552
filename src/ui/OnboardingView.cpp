#include "ui/OnboardingView.h"

#include <optional>

#include <QKeyEvent>
#include <QVBoxLayout>

#include "platform/main_queue.h"
#include "ui/AppImages.h"
#include "ui/controls/CrossFade.h"
#include "ui/controls/Label.h"
#include "ui/controls/Logo.h"
#include "ui/controls/PushButton.h"
#include "ui/controls/ScrollArea.h"
#include "ui/controls/StepList.h"

namespace quiverly {

namespace {

constexpr double verdictDelay = 0.6; // seconds

std::optional<QString> phaseError(const BonkoEngine& engine) {
    const BonkoEngine::Phase& phase = engine.phase;
    if (phase.kind != BonkoEngine::Phase::Kind::error) return std::nullopt;
    return QString::fromStdString(phase.message);
}

} // namespace

OnboardingView::OnboardingView(BonkoEngine& engine)
    : engine(engine),
      steps(new StepList),
      area(new ScrollArea(welcomeAndSteps())),
      continueButton(new PushButton("Continue")),
      observer(engine.objectWillChange, [this] { refresh(); }) {
    setFixedSize(420, 560);
    auto* footer = new QVBoxLayout;
    footer->setContentsMargins(28, 0, 28, 0);
    footer->addWidget(continueButton);

    auto* root = new QVBoxLayout(this);
    root->setContentsMargins(0, 0, 0, 28);
    root->setSpacing(0);
    root->addWidget(area, 1);
    root->addLayout(footer);

    connect(continueButton, &PushButton::clicked, this, [this] {
        if (onContinue) onContinue();
    });
    onAppear = [this] { beginHardwareCheck(); };
    onDisappear = [this] { endHardwareCheck(); };
    refresh();
}

QWidget* OnboardingView::welcomeAndSteps() {
    steps->add("Hardware check", hardwareBody());
    auto* content = new QWidget;
    auto* column = new QVBoxLayout(content);
    column->setContentsMargins(28, 28, 28, 0);
    column->setSpacing(0);
    column->addLayout(welcomeBlock());
    column->addWidget(steps);
    column->addSpacerItem(new QSpacerItem(0, 12, QSizePolicy::Minimum, QSizePolicy::Expanding));
    return content;
}

QLayout* OnboardingView::welcomeBlock() {
    auto* logo = new Logo(welcomeLogo(), {.size = 72, .radius = 16, .symbolHeight = 50, .shadow = true});
    auto* title = new Label(FontRole::welcome, Tone::primary, "Welcome to Quiverly");
    title->wrap(Qt::AlignHCenter);
    auto* subtitle =
        new Label(FontRole::callout, Tone::secondary, "Slap your MacBook. It has feelings, and it will tell you.");
    subtitle->wrap(Qt::AlignHCenter);

    auto* block = new QVBoxLayout;
    block->setContentsMargins(0, 8, 0, 28);
    block->setSpacing(10);
    block->addWidget(logo, 0, Qt::AlignHCenter);
    block->addWidget(title);
    block->addWidget(subtitle);
    return block;
}

QWidget* OnboardingView::hardwareBody() {
    auto* body = new QWidget;
    auto* column = new QVBoxLayout(body);
    column->setContentsMargins(0, 8, 0, 0);
    column->setSpacing(10);
    for (StatusLine*& line : lines) {
        line = new StatusLine;
        column->addWidget(line);
    }
    return body;
}

void OnboardingView::resetHardwareState() {
    step = 1;
    accelOK = false;
    slapOK = false;
    waitingForSlap = true;
}

void OnboardingView::beginHardwareCheck() {
    resetHardwareState();
    engine.beginHardwareCheck([this](double) { feelTestSlap(); });
    mainQueue::postAfter(verdictDelay, [this, life = std::weak_ptr(alive)] {
        if (!life.expired()) judgeAccelerometer();
    });
    refresh();
}

void OnboardingView::endHardwareCheck() {
    engine.endHardwareCheck();
    engine.stop();
}

void OnboardingView::judgeAccelerometer() {
    if (step != 1) return;
    accelOK = engine.isRunning();
    if (phaseError(engine)) accelOK = false;
    refresh();
}

void OnboardingView::feelTestSlap() {
    if (!waitingForSlap) return;
    slapOK = true;
    waitingForSlap = false;
    crossFade(*this);
    step = 2;
    engine.endHardwareCheck();
    engine.soundEnabled = false;
    refresh();
}

void OnboardingView::refresh() {
    refreshLines();
    steps->show(1, step == 1, step > 1);
    refreshContinue();
}

void OnboardingView::refreshLines() {
    const auto status = hardwareStatus();
    QWidget* news = nullptr;
    for (std::size_t index = 0; index < lines.size(); ++index) {
        const bool isShown = index < status.size();
        const bool isNew = isShown && (lines[index]->show(status[index]) || lines[index]->isHidden());
        lines[index]->setVisible(isShown);
        if (isNew) news = lines[index];
    }
    if (news) area->reveal(*news);
}

void OnboardingView::refreshContinue() {
    const bool complete = step > 1;
    if (complete == !continueButton->isHidden()) return;
    continueButton->setVisible(complete);
    if (complete) continueButton->setFocus();
}

// Enter continues wherever the focus is.
void OnboardingView::keyPressEvent(QKeyEvent* event) {
    const bool enters = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (enters && !event->isAutoRepeat() && continueButton->isVisible()) return continueButton->click();
    View::keyPressEvent(event);
}

std::vector<StatusLine::Status> OnboardingView::hardwareStatus() const {
    std::vector<StatusLine::Status> status;
    if (step == 1) {
        const auto error = phaseError(engine);
        status.push_back({.ok = accelOK,
                          .text = accelOK ? "Accelerometer detected" : error.value_or("Looking for accelerometer…"),
                          .warning = !accelOK && error});
        status.push_back({.text = "Turn volume down if you’re in public — the test slap plays a sexy sound.",
                          .warning = true,
                          .forceWarning = true});
        if (waitingForSlap && accelOK) {
            status.push_back({.text = "Slap your MacBook to test — you’ll hear a sexy clip!", .hand = true});
        }
        if (slapOK) status.push_back({.ok = true, .text = "Motion detected — you’re good to go!"});
    } else {
        status.push_back({.ok = true, .text = "Accelerometer OK — you’re good to go!"});
        if (slapOK) status.push_back({.ok = true, .text = "Motion check passed"});
    }
    return status;
}

} // namespace quiverly
