// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QRectF>
#include <QSize>

namespace orvane {

/// The properties of a window that floats above others for which Qt has no functions. Owned by the
/// class of that window; main thread. Never fails: desktops ignore what they do not support.
class FloatingWindow {
public:
    virtual ~FloatingWindow() = default;

    /// To be called each time before the window is shown; it has a native window by then. Puts it
    /// on all desktops, keeps it out of the task bar and the pager, and forbids to minimise it.
    virtual void aboutToShow() = 0;
    /// To be called each time before the window is hidden. Keeps its frame, which window managers
    /// change while they let go of a window.
    virtual void aboutToHide() = 0;
    /// To be called each time after the window was shown. Restores the size hints, which Qt has
    /// overwritten.
    virtual void shown() = 0;
    /// To be called each time the window has appeared on the screen after it was shown. Restores
    /// the frame if the window manager has placed the window elsewhere.
    virtual void appeared() = 0;

    /// Whether the window stays above other programs' full-screen windows too, where the window
    /// manager can be brought to it. Off at first.
    virtual void setAboveFullScreen(bool isAbove) = 0;
    /// Whether a full-screen window takes this one along when it is minimised.
    [[nodiscard]] virtual bool followsFullScreen() const = 0;

    /// Sets the limits for resizing by the user: the smallest size in points, and the narrowest and
    /// widest aspect ratio. Many window managers resize a window at once that is outside them.
    virtual void setSizeHints(QSize smallest, QSize narrowest, QSize widest) = 0;

    /// Desktop coordinates: points, y downwards, exact at every scale factor.
    [[nodiscard]] virtual QRectF frame() const = 0;
    virtual void setFrame(const QRectF& frame) = 0;

    /// Whether the user may be dragging the window just now: window managers ignore its requests
    /// meanwhile, or place it wrongly.
    [[nodiscard]] virtual bool mayBeDragged() const = 0;

    /// A window that does not accept the pointer lets clicks through.
    virtual void setAcceptsPointer(bool accepts) = 0;
    /// For a window that accepts no pointer, whose opacity is 0 and which draws nothing: does what
    /// else the desktop needs to show and click what is behind it. To be called repeatedly while it
    /// has vanished, as compositors start and stop. Does not take the keyboard on its return.
    virtual void setVanished(bool vanished) = 0;

    /// Sends the requests that Qt has buffered; to be called after calls to Qt that change the
    /// window, since otherwise they may wait for the next event.
    virtual void flush() = 0;
};

} // namespace orvane
