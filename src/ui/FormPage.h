// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/DeferredCall.h"

#include <QFont>
#include <QHash>
#include <QLabel>
#include <QPalette>
#include <QRectF>
#include <QSize>
#include <QWidget>

#include <functional>

class QScrollArea;

namespace orvane {

/// A page that places its controls at fixed positions, in points from its lower left corner with y
/// upwards; in a right-to-left interface they are reflected. The positions scale with the desktop's
/// font, also when it changes, so that texts fit in any font size. Owned by its window; main
/// thread.
class FormPage : public QWidget {
    Q_OBJECT

public:
    struct LabelStyle {
        /// Points; 0 for the desktop's default size.
        int size = 0;
        QFont::Weight weight = QFont::Normal;
        QPalette::ColorRole color = QPalette::WindowText;
        Qt::Alignment alignment = Qt::AlignLeft;
    };

    explicit FormPage(QWidget* parent = nullptr);

    /// Returns the number of pixels per point, at least 1.
    [[nodiscard]] static double scale();
    [[nodiscard]] static QSize scaled(const QSizeF& points);

    /// Returns `font` in the style's size and weight, scaled like the positions.
    [[nodiscard]] static QFont scaledFont(QFont font, const LabelStyle& style);

    enum class Width {
        fixed,
        /// At least what the text needs.
        grows
    };
    /// Adds the control, or moves one that the page has already.
    void place(QWidget* control, const QRectF& frame, Width width = Width::fixed);
    /// Adds plain text. A label at the left, or in a right-to-left interface at the right, grows
    /// beyond its frame if the text needs it.
    QLabel* addLabel(const QString& text, const QRectF& frame, const LabelStyle& style);
    /// Adds the caption of a control that follows it, close to the control.
    QLabel* addCaption(const QString& text, const QRectF& frame);

    /// Hides all controls of a page that is much longer than its viewport: Qt compares every shown
    /// control with all its siblings, visible or not.
    void hideControls();
    /// Shows the controls between these positions, in pixels from the top, and leaves them shown.
    void revealControls(int top, int bottom);

protected:
    /// Called whenever the page is shown; its data may have changed elsewhere.
    virtual void refresh() {}
    /// Called when the desktop's font has changed and all controls have been placed anew.
    virtual void fontChanged() {}

    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    struct Placed {
        QRectF frame;
        Width width = Width::fixed;
    };

    void layOut();
    void followFont();
    [[nodiscard]] QRect pixels(QWidget* control, const Placed& placed) const;

    QHash<QWidget*, Placed> m_placed;
    QHash<QLabel*, LabelStyle> m_labels;
    QFont m_font;
    /// Once the controls have got the new font.
    DeferredCall m_followFont{[this] { followFont(); }};
};

/// Keeps a window of a fixed size in points, which grows with the desktop's font and scale. A child
/// of the window; main thread.
class FixedSize final : public QObject {
public:
    /// Sets the size at once. `laidOut` is called after every change of the window's size.
    FixedSize(QWidget& window, const QSizeF& points, std::function<void()> laidOut);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void apply();

    QWidget& m_window;
    QSizeF m_points;
    std::function<void()> m_laidOut;
    DeferredCall m_apply{[this] { apply(); }};
};

/// Creates a vertical scroll area with a transparent background for `showListPage`.
[[nodiscard]] QScrollArea* makeListScroll(const QString& name);
/// Shows `page`, a list with one or more controls per row, at the scroll position of the previous
/// page, which is deleted later. Rows are shown as they come near the viewport, with enough of them
/// above and below it for the Tab key to reach the next one.
/// The rows are widgets because a QListView with a delegate answers a screen reader's toggle action
/// by selecting the row instead of changing its check box (Qt 6.4), and moves between rows with the
/// arrow keys, which are shortcuts of the program.
void showListPage(QScrollArea& scroll, FormPage* page);

/// Centres a window that is not shown yet.
void centreOnScreen(QWidget& window);

} // namespace orvane
