#include "tools/simulate/window/LaptopWindow.h"

#include <algorithm>

#include <QBoxLayout>
#include <QGridLayout>
#include <QScreen>
#include <QShortcut>

#include "tools/simulate/window/ActionButton.h"
#include "tools/simulate/window/LaptopView.h"
#include "tools/simulate/window/Strip.h"
#include "ui/AppImages.h"
#include "ui/Theme.h"
#include "ui/controls/Label.h"
#include "ui/controls/StatusPill.h"
#include "ui/controls/accessibility.h"
#include "ui/header.h"

namespace quiverly {

namespace {

constexpr char title[] = "Quiverly: simulated laptop";

constexpr QSize size{556, 680};  // pixels
constexpr QPoint place{452, 48}; // beside the application's window, where ./run puts that

constexpr int actionsInRow = 4;

// With one decimal, or as many more as keep the amplitude of a slap from seeming less than it has to be.
QString rounded(double amplitude, double least) {
    int decimals = 1;
    while (decimals < 3 && QString::number(amplitude, 'f', decimals).toDouble() < least) ++decimals;
    return QString::number(amplitude, 'f', decimals);
}

} // namespace

LaptopWindow::LaptopWindow(VirtualPlatform& platform)
    : detector(platform),
      pill(new StatusPill),
      state(new Label(FontRole::subheadline, Tone::secondary)),
      laptop(new LaptopView),
      said(new Label(FontRole::callout, Tone::primary, "no slap yet")),
      strip(new Strip) {
    frame.setWindowTitle(title);
    frame.setWindowIcon(windowIcon());
    frame.setContextMenuPolicy(Qt::NoContextMenu);
    describeAs(frame, QAccessible::Window);
    QObject::connect(&Theme::current(), &Theme::changed, &frame,
                     [this] { frame.setPalette(Theme::current().palette()); });
    frame.setPalette(Theme::current().palette());

    auto* content = new QWidget;
    auto* root = new QVBoxLayout(content);
    root->setContentsMargins(0, 0, 0, 0);
    root->setSpacing(0);
    root->addLayout(windowHeader("Simulated laptop", state, pill));
    root->addLayout(column(), 1);
    frame.setCentralWidget(content);
    frame.resize(size.expandedTo(frame.minimumSizeHint()));

    state->speakChanges();
    said->setAlignment(Qt::AlignCenter);
    describeAsSpeaking(*said);
    laptop->onSlap = [this](double peak) { send("slap " + QByteArray::number(peak, 'f', 2)); };
    detector.onReading = [this](const Reading& reading, bool isCoolingDown) {
        strip->addReading(reading, isCoolingDown);
    };
    detector.onSlap = [this](double seconds, double amplitude) {
        strip->addSlap({.seconds = seconds, .amplitude = amplitude});
        announce(amplitude);
    };
    addSlapKeys();
    laptop->setFocus();
    refresh();
}

QLayout* LaptopWindow::column() {
    auto* hint = new Label(FontRole::caption, Tone::secondary,
                           "Press the laptop; hold or drag to slap harder. Keys 1 to 9 slap with 0.1 to 0.9 g.");
    hint->setAlignment(Qt::AlignCenter);
    auto* column = new QVBoxLayout;
    column->setContentsMargins(20, 14, 20, 20);
    column->setSpacing(10);
    column->addWidget(laptop, 1);
    column->addWidget(said);
    column->addWidget(hint);
    column->addWidget(strip);
    column->addLayout(actions());
    return column;
}

QLayout* LaptopWindow::actions() {
    const auto sends = [this](const QByteArray& line) { return [this, line] { send(line); }; };
    typing = action("Type", [this] { send(laptop->movement().isTyping() ? "rest" : "type"); });
    walking = action("Walk", [this] { send(laptop->movement().isWalking() ? "rest" : "walk"); });
    tilting = action("Tilt", [this] { send(laptop->movement().isTilted() ? "tilt 0 0 1" : "tilt 0.5 0 0.866"); });
    sensor = action({}, [this] { send(isPluggedIn ? "vanish" : "appear"); });
    permission = action({}, [this] { send(isPermitted ? "deny" : "allow"); });
    for (ActionButton* button : {typing, walking, tilting}) button->setCheckable(true);
    ActionButton* const buttons[] = {
        typing,
        walking,
        action("Bump the table", sends("bump")),
        action("Shut the lid", sends("lid")),
        tilting,
        action("Pick up", sends("lift")),
        sensor,
        permission,
    };
    auto* grid = new QGridLayout;
    grid->setSpacing(8);
    int index = 0;
    for (ActionButton* button : buttons) {
        grid->addWidget(button, index / actionsInRow, index % actionsInRow);
        ++index;
    }
    for (int column = 0; column < actionsInRow; ++column) grid->setColumnStretch(column, 1);
    return grid;
}

ActionButton* LaptopWindow::action(const QString& label, const std::function<void()>& onClick) {
    auto* button = new ActionButton(label);
    QObject::connect(button, &QPushButton::clicked, &frame, onClick);
    return button;
}

void LaptopWindow::addSlapKeys() {
    for (int digit = 1; digit <= 9; ++digit) {
        auto* key = new QShortcut(QKeySequence(Qt::Key_0 + digit), &frame);
        key->setAutoRepeat(false);
        QObject::connect(key, &QShortcut::activated, &frame, [this, digit] { laptop->slap(digit / 10.0); });
    }
    for (const Qt::Key key : {Qt::Key_Q, Qt::Key_W}) {
        QObject::connect(new QShortcut(Qt::CTRL | key, &frame), &QShortcut::activated, &frame, &QWidget::close);
    }
}

void LaptopWindow::show() {
    const QRect screen = frame.screen()->availableGeometry();
    const QPoint free = screen.bottomRight() - QPoint(frame.width(), frame.height());
    frame.move(std::max(screen.left(), std::min(screen.left() + place.x(), free.x())),
               std::max(screen.top(), std::min(screen.top() + place.y(), free.y())));
    frame.show();
}

void LaptopWindow::send(const QByteArray& line) {
    if (onCommand) onCommand(line);
    refresh(); // a button that was clicked shows the state that it is to change
}

void LaptopWindow::tell(const window::Message& message) {
    std::visit([this](const auto& what) { take(what); }, message);
}

void LaptopWindow::setThreshold(double threshold) {
    detector.setThreshold(threshold);
    strip->setThreshold(threshold);
}

void LaptopWindow::take(const window::Report& report) {
    detector.feel(report.millisecond, report.bytes);
}

void LaptopWindow::take(const window::Dropped& dropped) {
    detector.miss(dropped.reports);
}

void LaptopWindow::take(const window::Reporting& reporting) {
    detector.begin(reporting.process);
    isReporting = true;
    refresh();
}

void LaptopWindow::take(const window::Silent&) {
    isReporting = false;
    refresh();
}

void LaptopWindow::take(const window::Obeyed& obeyed) {
    const auto command = command::parse(obeyed.command);
    if (!command) return;
    laptop->obey(*command);
    remember(*command);
    refresh();
}

void LaptopWindow::take(const window::Problem& problem) {
    said->setText(QString::fromStdString(problem.text));
    speak(*said);
}

void LaptopWindow::remember(const command::Command& command) {
    if (std::holds_alternative<command::Vanish>(command)) isPluggedIn = false;
    if (std::holds_alternative<command::Appear>(command)) isPluggedIn = true;
    if (std::holds_alternative<command::Deny>(command)) isPermitted = false;
    if (std::holds_alternative<command::Allow>(command)) isPermitted = true;
    if (std::holds_alternative<command::Sleep>(command)) isAsleep = true;
    if (std::holds_alternative<command::Wake>(command)) isAsleep = false;
}

void LaptopWindow::announce(double amplitude) {
    said->setText("slap " + rounded(amplitude, detector.leastAmplitude()) + " g");
    speak(*said);
}

void LaptopWindow::refresh() {
    typing->setChecked(laptop->movement().isTyping());
    walking->setChecked(laptop->movement().isWalking());
    tilting->setChecked(laptop->movement().isTilted());
    sensor->setText(isPluggedIn ? "Unplug sensor" : "Plug in sensor");
    permission->setText(isPermitted ? "Deny access" : "Allow access");
    if (!isPluggedIn) {
        pill->show("Unplugged", Tone::orange);
        state->setText("Quiverly finds no sensor.");
    } else if (isAsleep) {
        pill->show("Asleep", Tone::secondary);
        state->setText("The sensor is there but reports nothing.");
    } else if (isReporting) {
        pill->show("Listening", Tone::green);
        state->setText("Quiverly feels what you do to it.");
    } else if (!isPermitted) {
        pill->show("Denied", Tone::orange);
        state->setText("Quiverly may not open the sensor.");
    } else {
        pill->show("Idle", Tone::secondary);
        state->setText("Press Start listening in Quiverly, then slap here.");
    }
}

} // namespace quiverly
