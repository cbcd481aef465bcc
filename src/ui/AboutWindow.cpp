// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/AboutWindow.h"

#include "model/AppConstants.h"

#include <QDesktopServices>
#include <QEvent>
#include <QFontInfo>
#include <QScreen>
#include <QUrl>

#include <algorithm>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

// Points, y downwards.
constexpr QSize windowSize(320, 280);
constexpr QRect iconFrame(0, 10, 320, 70);
constexpr QRect nameFrame(0, 80, 320, 28);
constexpr QRect versionFrame(0, 108, 320, 20);
constexpr QRect descriptionFrame(30, 134, 260, 46);
constexpr QRect buttonFrame(110, 216, 100, 24);
constexpr int iconPixelSize = 64;
constexpr int namePixelSize = 20;
constexpr int textPixelSize = 12;
/// A desktop whose own text is larger than this has everything here enlarged likewise.
constexpr int ordinaryPixelSize = 16;
/// Above and below the button's text together.
constexpr int buttonPadding = 6;
/// What stays free above the button, and half of what does below it, when texts need more room.
constexpr int smallestGap = 12;

QLabel* centredLabel(const QString& text, QPalette::ColorRole role, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    label->setTextFormat(Qt::PlainText);
    label->setAlignment(Qt::AlignCenter);
    label->setForegroundRole(role);
    return label;
}

void setText(QLabel& label, double pixelSize, QFont::Weight weight) {
    QFont font = label.font();
    font.setPixelSize(qRound(pixelSize));
    font.setWeight(weight);
    label.setFont(font);
}

/// The usual size, or more where the text would be cut.
QSize neededSize(const QWidget& widget, const QSize& usual) {
    QSize text = widget.sizeHint();
    if (widget.hasHeightForWidth())
        text = QSize(0, widget.heightForWidth(usual.width()));
    else if (qobject_cast<const QPushButton*>(&widget) != nullptr)
        text.setHeight(widget.fontMetrics().height() + buttonPadding); // Styles like it taller.
    return usual.expandedTo(text);
}

QUrl webAddress(const QString& text) {
    const QUrl url(text, QUrl::StrictMode);
    const bool isWeb = url.scheme() == "https"_L1 || url.scheme() == "http"_L1;
    return url.isValid() && isWeb && !url.host().isEmpty() ? url : QUrl();
}

} // namespace

AboutWindow::AboutWindow() : AboutWindow(QStringLiteral(ORVANE_WEBSITE)) {}

AboutWindow::AboutWindow(const QString& website)
    : QDialog(nullptr, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                           Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint |
                           Qt::WindowStaysOnTopHint),
      m_website(website),
      m_icon(centredLabel(u"📺"_s, QPalette::WindowText, this)),
      m_name(centredLabel(AppConstants::appName, QPalette::WindowText, this)),
      m_version(centredLabel(
          u"Version %1 (%2)"_s.arg(AppConstants::appVersion, AppConstants::buildNumber),
          QPalette::PlaceholderText, this)),
      m_description(centredLabel(u"Live Arabic & international news channels in your menu bar. "
                                 "Free, no account needed."_s,
                                 QPalette::PlaceholderText, this)),
      m_websiteButton(new QPushButton(webAddress(website).host(), this)) {
    setWindowTitle(u"About Orvane"_s);
    // The fonts of symbols have a plain one, and come first otherwise.
    QFont glyphs = m_icon->font();
    glyphs.setFamilies({u"Noto Color Emoji"_s, glyphs.family()});
    m_icon->setFont(glyphs);
    m_description->setWordWrap(true);
    m_websiteButton->setObjectName(u"websiteButton"_s);
    m_websiteButton->setHidden(m_websiteButton->text().isEmpty());
    connect(m_websiteButton, &QPushButton::clicked, this, &AboutWindow::openWebsite);
    adoptDesktop();
    move(screen()->availableGeometry().center() - rect().center());
}

void AboutWindow::openWebsite() const {
    const QUrl address = webAddress(m_website);
    if (address.isValid())
        QDesktopServices::openUrl(address);
}

void AboutWindow::changeEvent(QEvent* event) {
    QDialog::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::PaletteChange)
        adoptDesktop();
}

void AboutWindow::adoptDesktop() {
    const double scale =
        std::max(1.0, static_cast<double>(QFontInfo(font()).pixelSize()) / ordinaryPixelSize);
    setText(*m_icon, iconPixelSize * scale, QFont::Normal);
    setText(*m_name, namePixelSize * scale, QFont::Bold);
    setText(*m_version, textPixelSize * scale, QFont::Normal);
    setText(*m_description, textPixelSize * scale, QFont::Normal);
    QPalette blue = palette();
    blue.setColor(QPalette::ButtonText, blue.color(QPalette::Link));
    m_websiteButton->setPalette(blue);
    arrange(scale);
}

void AboutWindow::arrange(double scale) {
    struct Row {
        QWidget* widget;
        QRect frame;
    };
    const Row rows[]{{m_icon, iconFrame},
                     {m_name, nameFrame},
                     {m_version, versionFrame},
                     {m_description, descriptionFrame},
                     {m_websiteButton, buttonFrame}};
    const auto scaled = [scale](int length) { return qRound(length * scale); };
    const int gap = scaled(smallestGap);
    int width = scaled(windowSize.width());
    int bottom = 0;
    for (const auto& [widget, frame] : rows) {
        widget->resize(neededSize(*widget, frame.size() * scale));
        const int highest = widget == m_websiteButton ? bottom + gap : bottom;
        widget->move(0, std::max(scaled(frame.y()), highest));
        width = std::max(width, widget->width());
        bottom = widget->geometry().bottom() + 1;
    }
    for (const Row& row : rows)
        row.widget->move((width - row.widget->width()) / 2, row.widget->y());
    setFixedSize(width, std::max(scaled(windowSize.height()), bottom + 2 * gap));
}

} // namespace orvane
