#pragma once

#include <QAccessible>

class QString;
class QWidget;

namespace quiverly {

// Tells screen readers what a widget is and what it is called, where its class does not say so.
void describeAs(QWidget& widget, QAccessible::Role role, const QString& name);

} // namespace quiverly
