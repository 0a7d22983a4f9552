#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>
#include <stdexcept>

#include <QAbstractButton>
#include <QAccessible>
#include <QImage>
#include <QLabel>
#include <QWidget>

inline void PrintTo(const QString& text, std::ostream* out) {
    *out << '"' << text.toStdString() << '"';
}

inline void PrintTo(const QColor& color, std::ostream* out) {
    *out << color.name(QColor::HexArgb).toStdString();
}

namespace quiverly {

// What a user sees and a screen reader says of a window.

inline QAccessibleInterface& describe(QWidget& widget) {
    return *QAccessible::queryAccessibleInterface(&widget);
}

inline QString accessibleText(QWidget& widget, QAccessible::Text kind = QAccessible::Name) {
    return describe(widget).text(kind);
}

// The one visible widget of that kind and accessible name.
template<class Widget>
Widget& find(QWidget& root, const QString& name) {
    Widget* found = nullptr;
    for (QWidget* child : root.findChildren<QWidget*>()) {
        auto* widget = dynamic_cast<Widget*>(child);
        if (!widget || !widget->isVisibleTo(&root) || accessibleText(*widget) != name) continue;
        if (found) throw std::runtime_error("more than one: " + name.toStdString());
        found = widget;
    }
    if (!found) throw std::runtime_error("there is no " + name.toStdString());
    return *found;
}

template<class Widget>
bool shows(QWidget& root, const QString& name) {
    return std::ranges::any_of(root.findChildren<QWidget*>(), [&](QWidget* child) {
        return dynamic_cast<Widget*>(child) && child->isVisibleTo(&root) && accessibleText(*child) == name;
    });
}

inline bool showsText(QWidget& root, const QString& text) {
    return shows<QLabel>(root, text);
}

inline QLabel& text(QWidget& root, const QString& text) {
    return find<QLabel>(root, text);
}

inline QColor colorOf(const QWidget& label) {
    return label.palette().color(QPalette::WindowText);
}

// Where a widget is, in the coordinates of the root.
inline QRect place(const QWidget& widget, const QWidget& root) {
    return {widget.mapTo(&root, QPoint(0, 0)), widget.size()};
}

// The colour at a point of a picture of a widget, in the widget's coordinates.
inline QColor colorAt(const QImage& picture, QPoint point) {
    return picture.pixelColor(point * picture.devicePixelRatio());
}

inline QColor colorAt(QWidget& widget, QPoint point) {
    return colorAt(widget.grab().toImage(), point);
}

// The rows of a picture, in the widget's coordinates, that have a pixel of that colour.
inline double rowsOf(const QImage& picture, const QColor& color) {
    int rows = 0;
    for (int y = 0; y < picture.height(); ++y) {
        bool found = false;
        for (int x = 0; x < picture.width() && !found; ++x) found = picture.pixel(x, y) == color.rgb();
        rows += found ? 1 : 0;
    }
    return rows / picture.devicePixelRatio();
}

// Whether a picture has a pixel of that colour.
inline bool hasColor(const QImage& picture, const QColor& color) {
    return rowsOf(picture, color) > 0;
}

// What a colour of that opacity looks like on the ground.
inline QColor over(const QColor& color, double opacity, const QColor& ground) {
    const auto mix = [&](float a, float b) { return static_cast<float>(a * opacity + b * (1 - opacity)); };
    return QColor::fromRgbF(mix(color.redF(), ground.redF()), mix(color.greenF(), ground.greenF()),
                            mix(color.blueF(), ground.blueF()));
}

// No channel of the colours differs by more than rounding.
inline void expectNear(const QColor& seen, const QColor& wanted) {
    EXPECT_NEAR(seen.red(), wanted.red(), 1) << seen.name().toStdString();
    EXPECT_NEAR(seen.green(), wanted.green(), 1) << seen.name().toStdString();
    EXPECT_NEAR(seen.blue(), wanted.blue(), 1) << seen.name().toStdString();
}

// The colour a prominent button is filled with.
inline QColor tintOf(QWidget& button) {
    return colorAt(button, QPoint(button.width() / 2, 4));
}

} // namespace quiverly
