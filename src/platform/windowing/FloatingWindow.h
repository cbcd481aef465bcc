// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QRectF>
#include <QSize>

namespace orvane {

/// What the desktop does with a window that floats above the others and that the toolkit has no
/// words for. Owned by the window's class, whose window it watches; main thread. Never fails: what
/// a desktop does not know it ignores.
class FloatingWindow {
public:
    /// Where the window takes the pointer.
    enum class InputArea {
        everywhere,
        nowhere,
        /// Only along its edges, `ringWidth` wide, so that a pointer that leaves can be noticed.
        ring
    };
    /// How a window that is to be invisible gets so.
    enum class Concealment {
        /// Opacity 0 is enough.
        opacity,
        /// Opacity has no effect: the window has to have an empty shape.
        emptyShape,
        /// Neither may have: the window has to draw nothing.
        noContent
    };

    virtual ~FloatingWindow() = default;

    /// Before the window, which has its native window, is shown, each time: on all desktops, and
    /// neither in the task bar nor in the pager.
    virtual void aboutToShow() = 0;
    /// After that: what the toolkit did to hints and frame meanwhile is undone.
    virtual void shown() = 0;

    /// What the window manager keeps to when a person resizes the window: the smallest size in
    /// points, and the narrowest and widest shape. Many bend a window at once that is outside
    /// these.
    virtual void setSizeHints(QSize smallest, QSize narrowest, QSize widest) = 0;

    /// On the screen, in desktop coordinates: points, y downwards, exact on every scale factor.
    [[nodiscard]] virtual QRectF frame() const = 0;
    virtual void setFrame(const QRectF& frame) = 0;

    /// `ringWidth` in points.
    virtual void setInputArea(InputArea area, double ringWidth) = 0;

    /// Of the desktop as it is now: compositing managers come and go.
    [[nodiscard]] virtual Concealment concealment() const = 0;
    virtual void setShapeEmpty(bool isEmpty) = 0;

    /// Sends what the toolkit has only written down; after its calls that change the window. Else
    /// it may wait for the next event.
    virtual void flush() = 0;
};

} // namespace orvane
