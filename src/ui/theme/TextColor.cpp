// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/theme/TextColor.h"

#include "base/DeferredCall.h"
#include "ui/theme/Contrast.h"

#include <QEvent>
#include <QHash>
#include <QPushButton>

namespace orvane {

namespace {

/// Returns the shade for a text of this widget. To find it takes longer than all else that a label
/// in a long list needs, and most of them have the same, so it is remembered.
QColor shadeFor(const QWidget& widget, const QColor& hue, const QColor& tint) {
    static QHash<QList<QRgb>, QColor> found;
    constexpr qsizetype palettesAndHues = 64;
    const QPalette& palette = widget.palette();
    const bool isButton = qobject_cast<const QPushButton*>(&widget) != nullptr;
    const QList<QColor> backgrounds =
        tinted(isButton ? buttonBackgrounds(palette) : windowBackgrounds(palette), tint);
    QList<QRgb> key{hue.rgba()};
    for (const QColor& background : backgrounds)
        key += background.rgba();
    const auto known = found.constFind(key);
    if (known != found.constEnd())
        return *known;
    if (found.size() >= palettesAndHues)
        found.clear();
    return *found.insert(key, readableShade(hue, backgrounds, textContrast));
}

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
        const QColor shade = shadeFor(m_widget, m_hue, m_tint);
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
