#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>
#include <stdexcept>

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QImage>
#include <QLabel>
#include <QMainWindow>
#include <QWidget>

inline void PrintTo(const QString& text, std::ostream* out) {
    *out << '"' << text.toStdString() << '"';
}

inline void PrintTo(const QColor& color, std::ostream* out) {
    *out << color.name(QColor::HexArgb).toStdString();
}

namespace quiverly {

// What a window shows to its user and tells a screen reader.

inline QAccessibleInterface& describe(QWidget& widget) {
    return *QAccessible::queryAccessibleInterface(&widget);
}

inline QString accessibleText(QWidget& widget, QAccessible::Text kind = QAccessible::Name) {
    return describe(widget).text(kind);
}

// The application's window, whether it is open or closed.
inline QMainWindow& applicationWindow() {
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        auto* window = qobject_cast<QMainWindow*>(widget);
        if (window && window->windowTitle() == "Quiverly") return *window;
    }
    throw std::runtime_error("the application has no window");
}

// The one visible widget of that class and accessible name.
template<class Widget>
Widget& find(QWidget& root, const QString& name) {
    Widget* found = nullptr;
    for (QWidget* child : root.findChildren<QWidget*>()) {
        auto* widget = dynamic_cast<Widget*>(child);
        if (!widget || !widget->isVisibleTo(&root) || accessibleText(*widget) != name) continue;
        if (found) throw std::runtime_error("more than one is called " + name.toStdString());
        found = widget;
    }
    if (!found) throw std::runtime_error("none is called " + name.toStdString());
    return *found;
}

template<class Widget>
bool shows(QWidget& root, const QString& name) {
    return std::ranges::any_of(root.findChildren<QWidget*>(), [&](QWidget* child) {
        return dynamic_cast<Widget*>(child) && child->isVisibleTo(&root) && accessibleText(*child) == name;
    });
}

// The one visible widget that is a picture to screen readers and has that name.
inline QWidget& picture(QWidget& root, const QString& name) {
    QWidget* found = nullptr;
    for (QWidget* child : root.findChildren<QWidget*>()) {
        if (!child->isVisibleTo(&root) || accessibleText(*child) != name) continue;
        if (describe(*child).role() != QAccessible::Graphic) continue;
        if (found) throw std::runtime_error("more than one picture: " + name.toStdString());
        found = child;
    }
    if (!found) throw std::runtime_error("no picture " + name.toStdString());
    return *found;
}

inline bool showsPicture(QWidget& root, const QString& name) {
    return std::ranges::any_of(root.findChildren<QWidget*>(), [&](QWidget* child) {
        return child->isVisibleTo(&root) && accessibleText(*child) == name &&
               describe(*child).role() == QAccessible::Graphic;
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

// The colour of a line whose edges may be smoothed.
inline void expectSimilar(const QColor& seen, const QColor& wanted) {
    EXPECT_NEAR(seen.red(), wanted.red(), 64) << seen.name().toStdString();
    EXPECT_NEAR(seen.green(), wanted.green(), 64) << seen.name().toStdString();
    EXPECT_NEAR(seen.blue(), wanted.blue(), 64) << seen.name().toStdString();
}

// The colour a prominent button is filled with.
inline QColor tintOf(QWidget& button) {
    return colorAt(button, QPoint(button.width() / 2, 4));
}

} // namespace quiverly
