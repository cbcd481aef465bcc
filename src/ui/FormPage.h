// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFont>
#include <QHash>
#include <QLabel>
#include <QPalette>
#include <QRectF>
#include <QWidget>

class QScrollArea;

namespace orvane {

/// A page whose controls have fixed places, in points from its lower left corner with y upwards.
/// The places grow with the font that the desktop uses, so that texts fit where they fitted in the
/// font they were laid out for. Main thread.
class FormPage : public QWidget {
    Q_OBJECT

public:
    struct LabelStyle {
        /// Points; 0 for the desktop's own size.
        int size = 0;
        QFont::Weight weight = QFont::Normal;
        QPalette::ColorRole color = QPalette::WindowText;
        Qt::Alignment alignment = Qt::AlignLeft;
    };

    explicit FormPage(QWidget* parent = nullptr);

    /// Pixels for a point, at least 1.
    [[nodiscard]] static double scale();
    [[nodiscard]] static QSize scaled(const QSizeF& points);

    /// `font` in a size that keeps its proportion to the places.
    [[nodiscard]] static QFont scaledFont(QFont font, const LabelStyle& style);

    /// Takes the control over, or moves one that is here already.
    void place(QWidget* control, const QRectF& frame);
    /// A text that is shown as it is. One that starts on the left may go on beyond its frame.
    QLabel* addLabel(const QString& text, const QRectF& frame, const LabelStyle& style);
    /// The name, on the left, of the control beside it.
    QLabel* addCaption(const QString& text, const QRectF& frame);

    /// For a page that is much longer than what is seen of it: the toolkit compares every control
    /// that is shown with all the others, in sight or not.
    void hideControls();
    /// Shows what lies between these lines, in pixels from the top, for good.
    void revealControls(int top, int bottom);

protected:
    /// Called whenever the page comes into sight: what it shows may have changed elsewhere.
    virtual void refresh() {}

    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    [[nodiscard]] QRect pixels(const QRectF& frame) const;

    QHash<QWidget*, QRectF> m_places;
};

/// A view that scrolls a page up and down, on the surface that it lies on.
[[nodiscard]] QScrollArea* makePageScroll(const QString& name);
/// Shows `page` in it, scrolled to where the last one was, which goes once the events that are
/// under way have been dealt with. Its controls are shown as they come near, with enough of them
/// above and below for the Tab key to find the next one.
void showPage(QScrollArea& scroll, FormPage* page);

/// Places a window that is not shown yet.
void centreOnScreen(QWidget& window);

/// Lets a text have `color`, whatever the palette says.
void setTextColor(QWidget& widget, const QColor& color);

} // namespace orvane
