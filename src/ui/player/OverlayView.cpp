// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/player/OverlayView.h"

#include "language/Mirror.h"

#include "ui/AccessibleRole.h"
#include "ui/FittedText.h"
#include "ui/Spinner.h"
#include "ui/player/OverlayLayout.h"

#include <QLabel>
#include <QPainter>
#include <QPushButton>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

constexpr int messagePixelSize = 14;
constexpr int messageLines = 3;
constexpr int countdownPixelSize = 12;
constexpr double shade = 0.75;

QString countdownText(std::chrono::seconds left) {
    const auto minutes = std::chrono::floor<std::chrono::minutes>(left);
    const QString seconds = localNumber((left - minutes).count());
    if (minutes.count() == 0)
        return translated("Player", "Trying again in %1 s").arg(seconds);
    return translated("Player", "Trying again in %1 min %2 s")
        .arg(localNumber(minutes.count()), seconds);
}

/// Returns the text for a tooltip that wraps its lines and shows no character as markup.
QString toolTipFor(const QString& text) {
    return u"<qt>"_s + text.toHtmlEscaped().replace(u'\n', u"<br>"_s) + u"</qt>"_s;
}

QLabel* makeLabel(int pixelSize, QWidget* parent) {
    auto* label = new QLabel(parent);
    QFont font = label->font();
    font.setPixelSize(pixelSize);
    font.setWeight(QFont::Medium);
    label->setFont(font);
    label->setTextFormat(Qt::PlainText);
    label->setAlignment(Qt::AlignHCenter | Qt::AlignVCenter);
    QPalette palette = label->palette();
    palette.setColor(QPalette::WindowText, Qt::white);
    label->setPalette(palette);
    return label;
}

} // namespace

OverlayView::OverlayView(QWidget* parent)
    : QWidget(parent),
      m_spinner(new Spinner(Qt::white, this)),
      m_loadingLabel(makeLabel(messagePixelSize, this)),
      m_alert(new QWidget(this)),
      m_errorLabel(makeLabel(messagePixelSize, m_alert)),
      m_retryButton(new QPushButton(translated("Player", "Retry"), m_alert)),
      m_countdownLabel(makeLabel(countdownPixelSize, m_alert)) {
    m_spinner->setObjectName(u"overlaySpinner"_s);
    m_loadingLabel->setObjectName(u"overlayLoading"_s);
    m_alert->setObjectName(u"overlayAlert"_s);
    m_errorLabel->setObjectName(u"overlayMessage"_s);
    m_retryButton->setObjectName(u"overlayRetry"_s);
    m_countdownLabel->setObjectName(u"overlayCountdown"_s);
    setAccessibleRole(*m_alert, QAccessible::AlertMessage);
    m_countdownLabel->hide();
    m_retryButton->setAutoDefault(true); // Return presses it.
    connect(m_retryButton, &QPushButton::clicked, this, [this] {
        if (m_onRetry)
            m_onRetry();
    });
    hide();
}

bool OverlayView::isError() const {
    return !m_alert->isHidden();
}

void OverlayView::setState(const State& state) {
    if (const auto* loading = std::get_if<Loading>(&state)) {
        showLoading(loading->message);
    } else if (const auto* error = std::get_if<Error>(&state)) {
        showError(*error);
    } else {
        // An inactive window would keep a hidden button as the one with the focus.
        m_retryButton->clearFocus();
        hide();
        m_spinner->stop();
    }
}

void OverlayView::showLoading(const QString& message) {
    m_retryButton->clearFocus();
    m_alert->hide();
    m_message = m_details = message;
    m_loadingLabel->show();
    m_spinner->start();
    placeParts();
    show();
}

void OverlayView::showError(const Error& error) {
    m_spinner->stop();
    m_loadingLabel->hide();
    m_message = error.message;
    m_details = error.details;
    m_alert->setAccessibleName(m_message);
    // Hidden before it is shown, as it may be the next error in a row, and announced with its name.
    m_alert->hide();
    show();
    m_alert->show();
    placeParts();
    m_retryButton->setFocus();
}

void OverlayView::setCountdown(std::optional<std::chrono::seconds> left) {
    m_countdownLabel->setText(left ? countdownText(*left) : QString());
    m_countdownLabel->setVisible(left.has_value());
}

void OverlayView::placeParts() {
    // Fewer lines where a large font would push the button out of a low window.
    int lines = messageLines;
    while (!placeWithLines(lines) && lines > 1)
        --lines;
}

bool OverlayView::placeWithLines(int lines) {
    QLabel& label = isError() ? *m_errorLabel : *m_loadingLabel;
    OverlayParts parts{.content = isError() ? OverlayContent::retry : OverlayContent::spinner,
                       .retry = m_retryButton->sizeHint(),
                       .countdownHeight = m_countdownLabel->fontMetrics().height()};
    const int textWidth = overlayLayout(size(), parts).message.width();
    const QString fitted = fittedText(m_message, label.font(), textWidth, lines);
    label.setText(fitted);
    parts.messageHeight = label.sizeHint().height();
    const bool isComplete = m_message == m_details && !fitted.endsWith(u'…');
    label.setToolTip(isComplete ? QString() : toolTipFor(m_details));
    label.setAccessibleName(m_message);

    const OverlayLayout layout = overlayLayout(size(), parts);
    m_alert->setGeometry(rect());
    const auto put = [this](QWidget& part, const QRect& frame) {
        part.setGeometry(mirrored(frame, width()));
    };
    put(*m_spinner, layout.spinner);
    put(label, layout.message);
    put(*m_retryButton, layout.retry);
    put(*m_countdownLabel, layout.countdown);
    return layout.fits;
}

void OverlayView::paintEvent(QPaintEvent*) {
    QPainter(this).fillRect(rect(), QColor::fromRgbF(0, 0, 0, static_cast<float>(shade)));
}

void OverlayView::resizeEvent(QResizeEvent*) {
    placeParts();
}

} // namespace orvane
