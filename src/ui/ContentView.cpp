#include "ui/ContentView.h"

#include <algorithm>

#include <QVBoxLayout>

#include "ui/controls/Label.h"
#include "ui/controls/MonospacedDigits.h"
#include "ui/controls/PushButton.h"
#include "ui/controls/ScrollArea.h"
#include "ui/controls/SegmentedPicker.h"
#include "ui/controls/Slider.h"
#include "ui/controls/StatusPill.h"
#include "ui/header.h"

namespace quiverly {

namespace {

constexpr int lowestThreshold = 4;   // hundredths of g
constexpr int highestThreshold = 40; // hundredths of g

constexpr double pauseBetweenSlaps = 1.0; // seconds; of a quicker series a screen reader speaks the last slap only

QStringList packTitles() {
    QStringList titles;
    for (const SoundPack pack : SoundPack::allCases) titles << pack.title();
    return titles;
}

int indexOf(SoundPack pack) {
    return static_cast<int>(std::ranges::find(SoundPack::allCases, pack) - SoundPack::allCases.begin());
}

} // namespace

ContentView::ContentView(BonkoEngine& engine)
    : engine(engine),
      pill(new StatusPill),
      picker(new SegmentedPicker("Mode", packTitles())),
      value(new MonospacedDigits(FontRole::body, Tone::secondary)),
      slider(new Slider("Sensitivity", lowestThreshold, highestThreshold)),
      button(new PushButton({})),
      status(new Label(FontRole::callout, Tone::secondary)),
      hint(new Label(FontRole::caption, Tone::secondary,
                     "If macOS asks, allow Quiverly under Privacy → Input Monitoring")),
      counter(new Label(FontRole::caption, Tone::secondary)),
      observer(engine.objectWillChange, [this] { refresh(); }) {
    auto* root = new QVBoxLayout(this);
    root->setContentsMargins(0, 0, 0, 0);
    root->setSpacing(0);
    root->addLayout(windowHeader("Quiverly", new Label(FontRole::subheadline, Tone::secondary, "Slap → yell."), pill));
    root->addWidget(scrollArea(), 1);

    setFocusProxy(picker);
    picker->onChoice = [this](int index) { choosePack(index); };
    slider->onMove = [this](double threshold) { this->engine.threshold = threshold; };
    connect(button, &PushButton::clicked, this, &ContentView::startOrStop);
    refresh();
}

QSize ContentView::sizeHint() const {
    return {420, 560};
}

QSize ContentView::minimumSizeHint() const {
    return {std::max(400, layout()->minimumSize().width()), 480};
}

QWidget* ContentView::scrollArea() {
    auto* content = new QWidget;
    auto* column = new QVBoxLayout(content);
    column->setContentsMargins(20, 20, 20, 20);
    column->setSpacing(18);
    auto* mode = new Label(FontRole::strongCaption, Tone::secondary, "MODE");
    mode->setTracking(0.6);
    column->addWidget(mode);
    column->addWidget(picker);
    column->addLayout(sensitivityGroup());
    column->addWidget(button);
    column->addLayout(statusBlock());
    column->addWidget(counter);
    column->addStretch();
    counter->wrap();
    counter->speakChanges(pauseBetweenSlaps);
    area = new ScrollArea(content);
    return area;
}

QLayout* ContentView::sensitivityGroup() {
    auto* values = new QHBoxLayout;
    values->addWidget(new Label(FontRole::body, Tone::primary, "Sensitivity"));
    values->addWidget(value, 1);

    auto* group = new QVBoxLayout;
    group->setSpacing(6);
    group->addLayout(values);
    group->addWidget(slider);
    group->addWidget(new Label(FontRole::caption2, Tone::tertiary, "Lower detects lighter taps"));
    return group;
}

QLayout* ContentView::statusBlock() {
    status->wrap();
    status->speakChanges();
    hint->wrap();
    auto* block = new QVBoxLayout;
    block->setSpacing(8);
    block->addWidget(status);
    block->addWidget(hint);
    return block;
}

void ContentView::refresh() {
    const bool running = engine.isRunning();
    pill->show(running ? "Listening" : "Idle", running ? Tone::green : Tone::secondary);
    picker->select(indexOf(engine.pack));
    picker->setEnabled(engine.soundEnabled);
    value->setText(QString::asprintf("%.2f", engine.threshold.get()));
    slider->show(engine.threshold);
    button->setText(running ? "Stop" : "Start listening");
    button->setTint(running ? PushButton::Tint::stop : PushButton::Tint::accent);
    refreshStatusBlock();
    refreshCounter();
}

void ContentView::refreshStatusBlock() {
    const BonkoEngine::Phase& phase = engine.phase;
    const bool failed = phase.kind == BonkoEngine::Phase::Kind::error;
    const bool wasFailed = !hint->isHidden();
    hint->setVisible(failed);
    status->setTone(failed ? Tone::red : Tone::secondary);
    status->setSelectable(failed);
    status->setText(statusText());
    if (failed && !wasFailed) area->reveal(*hint);
}

QString ContentView::statusText() const {
    const BonkoEngine::Phase& phase = engine.phase;
    switch (phase.kind) {
    case BonkoEngine::Phase::Kind::idle:
        return "Press Start, then slap your MacBook.";
    case BonkoEngine::Phase::Kind::listening:
        return QString("Listening with %1 sounds. Slap away.").arg(engine.pack.get().title());
    case BonkoEngine::Phase::Kind::error:
        return QString::fromStdString(phase.message);
    }
    Q_UNREACHABLE();
}

void ContentView::refreshCounter() {
    const bool counts = engine.slapCount > 0;
    counter->setText(QString::asprintf("Slaps this session: %lld  ·  last %.3fg",
                                       static_cast<long long>(engine.slapCount), engine.lastAmplitude.get()));
    if (counts == counter->isVisibleTo(this)) return;
    counter->setVisible(counts);
    if (counts) area->reveal(*counter);
}

void ContentView::choosePack(int index) {
    engine.pack = SoundPack::allCases[static_cast<std::size_t>(index)];
}

void ContentView::startOrStop() {
    if (engine.isRunning()) {
        engine.stop();
    } else {
        engine.soundEnabled = true;
        engine.start();
    }
}

} // namespace quiverly
