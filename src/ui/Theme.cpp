#include "ui/Theme.h"

#include <algorithm>
#include <cmath>

#include <QApplication>
#include <QEvent>
#include <QPalette>
#include <QPointer>
#include <QStyle>
#include <QStyleHints>

namespace quiverly {

namespace {

bool systemIsDark() {
#if QT_VERSION >= QT_VERSION_CHECK(6, 5, 0)
    const Qt::ColorScheme scheme = QGuiApplication::styleHints()->colorScheme();
    if (scheme != Qt::ColorScheme::Unknown) return scheme == Qt::ColorScheme::Dark;
#endif
    return QGuiApplication::palette().color(QPalette::Window).lightness() < 128;
}

double linear(float channel) {
    return channel <= 0.04045F ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& color) {
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

// Black and white have a contrast of 21, black and yellow one of 19.6, the texts of ordinary desktops 10 to 18.5.
bool systemHasHighContrast() {
    constexpr double bound = 19.5;
    const QPalette palette = QGuiApplication::palette();
    const auto [darker, lighter] =
        std::minmax({luminance(palette.color(QPalette::Window)), luminance(palette.color(QPalette::WindowText))});
    return (lighter + 0.05) / (darker + 0.05) >= bound;
}

} // namespace

const Theme::Colors Theme::light{
    .window = {236, 236, 236},
    .primary = {35, 35, 35},
    .secondary = {93, 93, 93},
    .tertiary = {136, 136, 136},
    .red = {215, 0, 21},
    .orange = {176, 78, 0},
    .green = {28, 107, 47},
    .warning = {255, 149, 0},
    .accent = primaryPink,
    .stop = stopRed,
    .focus = {190, 24, 112},
    .divider = {212, 212, 212},
    .track = {219, 219, 219},
    .selection = {255, 255, 255},
    .selectionEdge = {205, 205, 205},
    .groove = {208, 208, 208},
    .handle = {255, 255, 255},
    .handleEdge = {190, 190, 190},
    .trackEdge = {0, 0, 0, 0},
    .edgeWidth = 0.5,
};

const Theme::Colors Theme::dark{
    .window = {50, 50, 50},
    .primary = {224, 224, 224},
    .secondary = {178, 178, 178},
    .tertiary = {124, 124, 124},
    .red = {255, 104, 93},
    .orange = {255, 159, 10},
    .green = {48, 209, 88},
    .warning = {255, 159, 10},
    .accent = primaryPink,
    .stop = stopRed,
    .focus = {255, 170, 214},
    .divider = {71, 71, 71},
    .track = {71, 71, 71},
    .selection = {98, 98, 98},
    .selectionEdge = {98, 98, 98},
    .groove = {82, 82, 82},
    .handle = {208, 208, 208},
    .handleEdge = {150, 150, 150},
    .trackEdge = {0, 0, 0, 0},
    .edgeWidth = 0.5,
};

const Theme::Colors Theme::lightHighContrast{
    .window = {255, 255, 255},
    .primary = {0, 0, 0},
    .secondary = {45, 45, 45},
    .tertiary = {70, 70, 70},
    .red = {150, 0, 15},
    .orange = {120, 50, 0},
    .green = {0, 72, 22},
    .warning = {176, 78, 0},
    .accent = {160, 15, 90},
    .stop = {160, 10, 10},
    .focus = {0, 0, 0},
    .divider = {90, 90, 90},
    .track = {232, 232, 232},
    .selection = {255, 255, 255},
    .selectionEdge = {0, 0, 0},
    .groove = {110, 110, 110},
    .handle = {255, 255, 255},
    .handleEdge = {0, 0, 0},
    .trackEdge = {90, 90, 90},
    .edgeWidth = 1.5,
};

const Theme::Colors Theme::darkHighContrast{
    .window = {0, 0, 0},
    .primary = {255, 255, 255},
    .secondary = {225, 225, 225},
    .tertiary = {195, 195, 195},
    .red = {255, 140, 130},
    .orange = {255, 185, 70},
    .green = {100, 235, 130},
    .warning = {255, 185, 70},
    .accent = {165, 20, 95},
    .stop = {172, 12, 12},
    .focus = {255, 255, 255},
    .divider = {170, 170, 170},
    .track = {35, 35, 35},
    .selection = {75, 75, 75},
    .selectionEdge = {255, 255, 255},
    .groove = {140, 140, 140},
    .handle = {0, 0, 0},
    .handleEdge = {255, 255, 255},
    .trackEdge = {170, 170, 170},
    .edgeWidth = 1.5,
};

Theme& Theme::current() {
    static QPointer<Theme> theme;
    if (!theme) theme = new Theme(qApp);
    return *theme;
}

Theme::Theme(QObject* application) : QObject(application) {
    readSystem();
    application->installEventFilter(this);
#if QT_VERSION >= QT_VERSION_CHECK(6, 5, 0)
    connect(QGuiApplication::styleHints(), &QStyleHints::colorSchemeChanged, this, &Theme::follow);
#endif
}

const Theme::Colors& Theme::colors() const {
    if (highContrast) return darkness ? darkHighContrast : lightHighContrast;
    return darkness ? dark : light;
}

bool Theme::reducesMotion() const {
    return preferences.reducedMotion || QApplication::style()->styleHint(QStyle::SH_Widget_Animation_Duration) == 0;
}

void Theme::prefer(const Preferences& next) {
    if (next == preferences) return;
    preferences = next;
    follow();
}

QColor Theme::color(Tone tone) const {
    switch (tone) {
    case Tone::primary:
        return colors().primary;
    case Tone::secondary:
        return colors().secondary;
    case Tone::tertiary:
        return colors().tertiary;
    case Tone::red:
        return colors().red;
    case Tone::orange:
        return colors().orange;
    case Tone::green:
        return colors().green;
    }
    Q_UNREACHABLE();
}

QPalette Theme::palette() const {
    QPalette palette(colors().primary, colors().track, colors().selection, colors().divider, colors().groove,
                     colors().primary, colors().primary, colors().window, colors().window);
    palette.setColor(QPalette::Highlight, colors().accent);
    palette.setColor(QPalette::HighlightedText, Qt::white);
    return palette;
}

bool Theme::eventFilter(QObject* watched, QEvent* event) {
    const bool concerns =
        event->type() == QEvent::ApplicationPaletteChange || event->type() == QEvent::ApplicationFontChange;
    if (concerns && watched == parent()) follow();
    return false;
}

void Theme::readSystem() {
    darkness = preferences.dark.value_or(systemIsDark());
    highContrast = preferences.highContrast || systemHasHighContrast();
}

void Theme::follow() {
    readSystem();
    emit changed();
}

} // namespace quiverly
