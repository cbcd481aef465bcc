// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/player/OverlayView.h"

#include "model/AppConstants.h"
#include "ui/FittedText.h"
#include "ui/Spinner.h"

#include <QLabel>
#include <QPainter>
#include <QPushButton>

#include <algorithm>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

constexpr int messagePixelSize = 14;
constexpr int messageLines = 3;
constexpr int messageMargin = 20;
constexpr int messageHeight = 50;
constexpr int countdownPixelSize = 12;
constexpr int countdownTop = 73;
constexpr int countdownHeight = 17;
constexpr double shade = 0.75;

QString countdownText(std::chrono::seconds left) {
    const auto minutes = std::chrono::floor<std::chrono::minutes>(left);
    const QString seconds = QString::number((left - minutes).count()) + u" s"_s;
    if (minutes.count() == 0)
        return u"Trying again in "_s + seconds;
    return u"Trying again in "_s + QString::number(minutes.count()) + u" min "_s + seconds;
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
      m_messageLabel(makeLabel(messagePixelSize, this)),
      m_retryButton(new QPushButton(u"Retry"_s, this)),
      m_countdownLabel(makeLabel(countdownPixelSize, this)) {
    m_spinner->setObjectName(u"overlaySpinner"_s);
    m_messageLabel->setObjectName(u"overlayMessage"_s);
    m_retryButton->setObjectName(u"overlayRetry"_s);
    m_countdownLabel->setObjectName(u"overlayCountdown"_s);
    m_retryButton->setFocusPolicy(Qt::NoFocus);
    connect(m_retryButton, &QPushButton::clicked, this, [this] {
        if (m_onRetry)
            m_onRetry();
    });
    hide();
}

void OverlayView::setState(const State& state) {
    if (const auto* loading = std::get_if<Loading>(&state)) {
        m_spinner->start();
        m_retryButton->hide();
        m_countdownLabel->hide();
        setMessage(loading->message, loading->message);
        show();
    } else if (const auto* error = std::get_if<Error>(&state)) {
        m_spinner->stop();
        m_retryButton->show();
        m_countdownLabel->show();
        setMessage(error->message, error->details);
        show();
    } else {
        hide();
        m_spinner->stop();
    }
}

void OverlayView::setCountdown(std::optional<std::chrono::seconds> left) {
    m_countdownLabel->setText(left ? countdownText(*left) : QString());
}

void OverlayView::setMessage(const QString& message, const QString& details) {
    m_message = message;
    m_details = details;
    placeParts();
}

void OverlayView::placeParts() {
    // The spinner is above the centre, the text across it and the button below. An error moves up
    // in a low window, where the control bar would cover the button.
    const int middleX = width() / 2;
    const int lowestMiddle = height() - static_cast<int>(AppConstants::controlBarHeight) -
                             countdownTop - countdownHeight;
    const bool isError = !m_retryButton->isHidden();
    const int middleY = isError ? std::min(height() / 2, lowestMiddle) : height() / 2;
    m_spinner->setGeometry(middleX - 16, middleY - 40, 32, 32);
    m_retryButton->setGeometry(middleX - 40, middleY + 44, 80, 26);
    m_countdownLabel->setGeometry(0, middleY + countdownTop, width(), countdownHeight);
    fitMessage(middleY);
}

void OverlayView::fitMessage(int middleY) {
    const QString fitted =
        fittedText(m_message, m_messageLabel->font(), width() - 2 * messageMargin, messageLines);
    m_messageLabel->setText(fitted);
    // Three lines of a font with tall letters need more than the usual height.
    const int textHeight = std::max(messageHeight, m_messageLabel->sizeHint().height());
    m_messageLabel->setGeometry(messageMargin, middleY - 20, width() - 2 * messageMargin,
                                textHeight);
    const bool isComplete = m_message == m_details && !fitted.endsWith(u'…');
    m_messageLabel->setToolTip(isComplete ? QString() : toolTipFor(m_details));
}

void OverlayView::paintEvent(QPaintEvent*) {
    QPainter(this).fillRect(rect(), QColor::fromRgbF(0, 0, 0, static_cast<float>(shade)));
}

void OverlayView::resizeEvent(QResizeEvent*) {
    placeParts();
}

} // namespace orvane
