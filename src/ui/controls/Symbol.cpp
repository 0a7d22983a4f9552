#include "ui/controls/Symbol.h"

#include <QColor>
#include <QFile>
#include <QPainter>
#include <QSvgRenderer>

namespace quiverly {

namespace {

QString file(Symbol symbol) {
    switch (symbol) {
    case Symbol::hand:
        return ":/symbols/hand.svg";
    case Symbol::warning:
        return ":/symbols/warning.svg";
    case Symbol::checkCircle:
        return ":/symbols/check-circle.svg";
    case Symbol::check:
        return ":/symbols/check.svg";
    }
    Q_UNREACHABLE();
}

QByteArray drawing(Symbol symbol, const QColor& color) {
    QFile source(file(symbol));
    if (!source.open(QIODevice::ReadOnly)) return {};
    return source.readAll().replace("currentColor", color.name().toLatin1());
}

} // namespace

void drawSymbol(QPainter& painter, const QRectF& rect, Symbol symbol, const QColor& color) {
    QSvgRenderer renderer(drawing(symbol, color));
    QRectF target({}, renderer.defaultSize().toSizeF().scaled(rect.size(), Qt::KeepAspectRatio));
    target.moveCenter(rect.center());
    painter.setRenderHint(QPainter::Antialiasing);
    renderer.render(&painter, target);
}

} // namespace quiverly
