#include "ui/Theme.h"

#include <QEvent>
#include <QGuiApplication>
#include <QPalette>
#include <QPointer>
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

Theme& Theme::current() {
    static QPointer<Theme> theme;
    if (!theme) theme = new Theme(qApp);
    return *theme;
}

Theme::Theme(QObject* application) : QObject(application), darkness(systemIsDark()) {
    application->installEventFilter(this);
#if QT_VERSION >= QT_VERSION_CHECK(6, 5, 0)
    connect(QGuiApplication::styleHints(), &QStyleHints::colorSchemeChanged, this, &Theme::follow);
#endif
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
    palette.setColor(QPalette::Highlight, primaryPink);
    palette.setColor(QPalette::HighlightedText, Qt::white);
    return palette;
}

bool Theme::eventFilter(QObject* watched, QEvent* event) {
    const bool concerns =
        event->type() == QEvent::ApplicationPaletteChange || event->type() == QEvent::ApplicationFontChange;
    if (concerns && watched == parent()) follow();
    return false;
}

void Theme::follow() {
    darkness = systemIsDark();
    emit changed();
}

} // namespace quiverly
