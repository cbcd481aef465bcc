// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAccessible>

class QWidget;

namespace orvane {

/// Tells screen readers what a plain widget is, for which Qt has no role: a window, or an alert,
/// which they announce with its accessible name when it appears. Main thread. To be called before
/// the widget has a title or is shown: newer versions of Qt tell both to screen readers at once,
/// and keep the role that it has then.
void setAccessibleRole(QWidget& widget, QAccessible::Role role);

} // namespace orvane
