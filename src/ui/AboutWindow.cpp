// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/AboutWindow.h"

#include "language/Translation.h"

#include "base/ProcessSettings.h"
#include "model/AppConstants.h"
#include "ui/ApplicationIcon.h"
#include "ui/FormPage.h"
#include "ui/theme/SystemColors.h"
#include "ui/theme/TextColor.h"

#include <QDesktopServices>
#include <QIcon>
#include <QPushButton>
#include <QUrl>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

constexpr QSizeF contentSize(320, 280);
constexpr QRectF buttonFrame(110, 40, 100, 24);
/// The sum of the space on both sides of the button's text.
constexpr double buttonPadding = 16;

QUrl webAddress(const QString& text) {
    const QUrl url(text, QUrl::StrictMode);
    const bool isWeb = url.scheme() == u"https" || url.scheme() == u"http";
    return url.isValid() && isWeb && !url.host().isEmpty() ? url : QUrl();
}

/// Returns the frame in points. The button grows to both sides for a longer host name.
QRectF frameOf(const QPushButton& button) {
    const double textWidth =
        button.fontMetrics().horizontalAdvance(button.text()) / FormPage::scale() + buttonPadding;
    const double growth = std::max(0.0, textWidth - buttonFrame.width()) / 2;
    return buttonFrame.adjusted(-growth, 0, growth, 0);
}

void addTexts(FormPage& page) {
    using enum QPalette::ColorRole;
    const Qt::Alignment centred = Qt::AlignHCenter;
    QLabel* icon = page.addLabel({}, {0, 200, 320, 70}, {.alignment = centred});
    icon->setPixmap(applicationIcon().pixmap(FormPage::scaled({64, 64}), page.devicePixelRatio()));
    page.addLabel(AppConstants::appName, {0, 172, 320, 28},
                  {.size = 20, .weight = QFont::Bold, .alignment = centred});
    page.addLabel(translated("About", "Version %1")
                      .arg(leftToRight(
                          u"%1 (%2)"_s.arg(AppConstants::appVersion, AppConstants::buildNumber))),
                  {0, 152, 320, 20}, {.size = 12, .color = PlaceholderText, .alignment = centred});
    page.addLabel(translated("About", "Live Arabic & international news channels in your menu bar. "
                                      "Free, no account needed."),
                  {30, 100, 260, 46}, {.size = 12, .color = PlaceholderText, .alignment = centred})
        ->setWordWrap(true);
}

} // namespace

AboutWindow::AboutWindow() : AboutWindow(QStringLiteral(ORVANE_WEBSITE)) {}

AboutWindow::AboutWindow(const QString& website)
    : QDialog(nullptr, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                           Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint),
      m_website(website) {
    setWindowTitle(translated("About", "About Orvane"));
    setWindowRole(u"about"_s);
    auto* page = new FormPage(this);
    addTexts(*page);
    QPushButton* button = makeButton();
    new FixedSize(*this, contentSize, [this, page, button] {
        page->setGeometry(rect());
        if (button != nullptr)
            page->place(button, frameOf(*button));
    });
    centreOnScreen(*this);
}

QPushButton* AboutWindow::makeButton() {
    const QString host = webAddress(m_website).host();
    if (host.isEmpty())
        return nullptr;
    auto* button = new QPushButton(leftToRight(host));
    button->setObjectName(u"websiteButton"_s);
    setTextColor(*button, SystemColors::blue);
    connect(button, &QPushButton::clicked, this, &AboutWindow::openWebsite);
    return button;
}

void AboutWindow::openWebsite() const {
    const QUrl address = webAddress(m_website);
    if (!address.isValid())
        return;
    const ProcessSettings::UsersOwn forTheBrowser;
    QDesktopServices::openUrl(address);
}

} // namespace orvane
