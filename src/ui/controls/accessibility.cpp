#include "ui/controls/accessibility.h"

#include <QAccessibleWidget>
#include <QVariant>
#include <QWidget>

namespace quiverly {

namespace {

constexpr char roleProperty[] = "accessibleRole";

QAccessibleInterface* describeByRole(const QString&, QObject* object) {
    const QVariant role = object->property(roleProperty);
    auto* widget = qobject_cast<QWidget*>(object);
    if (!widget || !role.isValid()) return nullptr;
    return new QAccessibleWidget(widget, static_cast<QAccessible::Role>(role.toInt()));
}

} // namespace

void describeAs(QWidget& widget, QAccessible::Role role, const QString& name) {
    QAccessible::installFactory(describeByRole); // of no effect when it is installed already
    widget.setProperty(roleProperty, role);
    widget.setAccessibleName(name);
}

} // namespace quiverly
