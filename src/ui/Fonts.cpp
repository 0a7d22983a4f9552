#include "ui/Fonts.h"

#include <algorithm>

#include <QApplication>
#include <QFontDatabase>
#include <QFontInfo>

namespace quiverly {

namespace {

constexpr double largestOrdinarySystemFont = 15.0; // pixels: 11 points, the largest default of a desktop

struct Design {
    double size; // pixels
    QFont::Weight weight;
    bool rounded = false;
};

Design designOf(FontRole role) {
    switch (role) {
    case FontRole::caption2:
        return {10, QFont::Medium};
    case FontRole::caption:
        return {10, QFont::Normal};
    case FontRole::strongCaption:
        return {10, QFont::DemiBold};
    case FontRole::subheadline:
        return {11, QFont::Normal};
    case FontRole::callout:
        return {12, QFont::Normal};
    case FontRole::body:
        return {13, QFont::Normal};
    case FontRole::headline:
    case FontRole::badge:
        return {13, QFont::Bold};
    case FontRole::title:
        return {20, QFont::Bold, true};
    case FontRole::welcome:
        return {24, QFont::Bold, true};
    }
    Q_UNREACHABLE();
}

// The typefaces of an embedded file; none if it cannot be loaded.
QStringList familiesIn(const QString& file) {
    return QFontDatabase::applicationFontFamilies(QFontDatabase::addApplicationFont(file));
}

const QStringList& roundedFamilies() {
    static const QStringList families = familiesIn(":/fonts/Quicksand-Bold.ttf");
    return families;
}

// Has a glyph for every character of the window, even on a system without fonts.
const QStringList& plainFamilies() {
    static const QStringList families = familiesIn(":/fonts/Text-Regular.otf");
    return families;
}

} // namespace

double fontScale() {
    return std::max(1.0, QFontInfo(QApplication::font()).pixelSize() / largestOrdinarySystemFont);
}

double scaled(double length) {
    return length * fontScale();
}

int scaled(int length) {
    return qRound(length * fontScale());
}

QFont fontFor(FontRole role) {
    const Design design = designOf(role);
    QFont font = QApplication::font();
    const QStringList system = font.families() << QFontInfo(font).family(); // the first may be an alias such as Sans
    const QStringList plain = system + plainFamilies();
    font.setFamilies(design.rounded ? roundedFamilies() + plain : plain);
    font.setPixelSize(qRound(scaled(design.size)));
    font.setWeight(design.weight);
    return font;
}

} // namespace quiverly
