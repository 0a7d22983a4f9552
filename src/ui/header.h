#pragma once

#include <QLayout>
#include <QString>

namespace quiverly {

// The head of a window: logo, title, a line below the title, a pill at the right, and a line below all of it.
QLayout* windowHeader(const QString& title, QWidget* subtitle, QWidget* pill);

} // namespace quiverly
