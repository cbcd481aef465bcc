// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/theme/TextColor.h"

#include "base/DeferredCall.h"
#include "ui/theme/Contrast.h"

#include <QEvent>
#include <QPushButton>

namespace orvane {

namespace {

/// Owned by the widget whose text it colours.
class TextColor final : public QObject {
public:
    TextColor(QWidget& widget, const QColor& hue, const QColor& tint)
        : QObject(&widget), m_widget(widget), m_hue(hue), m_tint(tint) {
        widget.installEventFilter(this);
        apply();
    }

    bool eventFilter(QObject*, QEvent* event) override {
        // A change of the application's palette reaches the widget's own only after this event.
        if (event->type() == QEvent::ApplicationPaletteChange)
            m_follow.schedule();
        else if (event->type() == QEvent::PaletteChange)
            apply();
        return false;
    }

private:
    void apply() {
        QPalette palette = m_widget.palette();
        const bool isButton = qobject_cast<QPushButton*>(&m_widget) != nullptr;
        const QList<QColor> backgrounds =
            isButton ? buttonBackgrounds(palette) : windowBackgrounds(palette);
        const QColor shade = readableShade(m_hue, tinted(backgrounds, m_tint), textContrast);
        // Setting a palette sends another event.
        if (palette.color(QPalette::Active, QPalette::WindowText) == shade)
            return;
        palette.setColor(QPalette::WindowText, shade);
        palette.setColor(QPalette::ButtonText, shade);
        m_widget.setPalette(palette);
    }

    QWidget& m_widget;
    QColor m_hue;
    QColor m_tint;
    DeferredCall m_follow{[this] { apply(); }};
};

void removeTextColor(const QWidget& widget) {
    for (QObject* child : widget.children()) {
        if (auto* color = dynamic_cast<TextColor*>(child)) {
            delete color;
            return;
        }
    }
}

} // namespace

void setTextColor(QWidget& widget, const QColor& hue, const QColor& tint) {
    removeTextColor(widget);
    widget.setForegroundRole(QPalette::NoRole);
    new TextColor(widget, hue, tint);
}

void clearTextColor(QWidget& widget) {
    removeTextColor(widget);
    widget.setPalette({});
}

} // namespace orvane
