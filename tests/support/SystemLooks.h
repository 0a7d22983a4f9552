#pragma once

#include <QApplication>
#include <QPalette>

namespace quiverly {

// What the system does when its user turns to dark or light windows, on a platform that has no preference of its own.
inline void setSystemDark(bool dark) {
    QApplication::setPalette(QPalette(dark ? QColor(40, 40, 40) : QColor(240, 240, 240)));
}

} // namespace quiverly
