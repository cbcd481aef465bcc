// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/AccessibleRole.h"

#include <QAccessibleWidget>
#include <QVariant>
#include <QWidget>

namespace orvane {

namespace {

constexpr const char* roleProperty = "accessibleRole";

QAccessibleInterface* makeInterface(const QString&, QObject* object) {
    auto* widget = qobject_cast<QWidget*>(object);
    const QVariant role = object->property(roleProperty);
    if (widget == nullptr || !role.isValid())
        return nullptr;
    return new QAccessibleWidget(widget, static_cast<QAccessible::Role>(role.toInt()));
}

} // namespace

void setAccessibleRole(QWidget& widget, QAccessible::Role role) {
    QAccessible::installFactory(makeInterface); // Once, however often it is called.
    widget.setProperty(roleProperty, static_cast<int>(role));
}

} // namespace orvane
