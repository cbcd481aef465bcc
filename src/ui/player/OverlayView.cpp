// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/player/OverlayView.h"

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
constexpr double shade = 0.75;

} // namespace

OverlayView::OverlayView(QWidget* parent)
    : QWidget(parent),
      m_spinner(new Spinner(Qt::white, this)),
      m_messageLabel(new QLabel(this)),
      m_retryButton(new QPushButton(u"Retry"_s, this)),
      m_countdownLabel(new QLabel(this)) {
    QFont font = m_messageLabel->font();
    font.setPixelSize(messagePixelSize);
    font.setWeight(QFont::Medium);
    m_messageLabel->setFont(font);
    m_messageLabel->setTextFormat(Qt::PlainText);
    m_messageLabel->setAlignment(Qt::AlignHCenter | Qt::AlignVCenter);
    QPalette palette = m_messageLabel->palette();
    palette.setColor(QPalette::WindowText, Qt::white);
    m_messageLabel->setPalette(palette);
    m_countdownLabel->setPalette(palette);
    m_countdownLabel->setAlignment(Qt::AlignCenter);

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
        setMessage(loading->message, loading->message);
        m_countdownLabel->hide();
        m_spinner->start();
        m_retryButton->hide();
        show();
    } else if (const auto* error = std::get_if<Error>(&state)) {
        setMessage(error->message, error->details);
        m_countdownLabel->setVisible(error->retriesIn.has_value());
        if (error->retriesIn)
            m_countdownLabel->setText(u"Trying again in %1 s"_s.arg(error->retriesIn->count()));
        m_spinner->stop();
        m_retryButton->show();
        show();
    } else {
        hide();
        m_spinner->stop();
    }
}

void OverlayView::setMessage(const QString& message, const QString& details) {
    m_message = message;
    m_details = details;
    fitMessage();
}

void OverlayView::fitMessage() {
    const int middleY = height() / 2;
    const QString fitted =
        fittedText(m_message, m_messageLabel->font(), width() - 2 * messageMargin, messageLines);
    m_messageLabel->setText(fitted);
    // Three lines of a font with tall letters need more than the usual height.
    const int textHeight = std::max(messageHeight, m_messageLabel->sizeHint().height());
    m_messageLabel->setGeometry(messageMargin, middleY - 20, width() - 2 * messageMargin,
                                textHeight);
    const bool isComplete = m_details == m_message && !fitted.endsWith(u'…');
    m_messageLabel->setToolTip(isComplete ? QString() : m_details.toHtmlEscaped());
}

void OverlayView::paintEvent(QPaintEvent*) {
    QPainter(this).fillRect(rect(), QColor::fromRgbF(0, 0, 0, static_cast<float>(shade)));
}

void OverlayView::resizeEvent(QResizeEvent*) {
    // The spinner is above the centre, the text across it and the button below.
    const int middleX = width() / 2;
    const int middleY = height() / 2;
    m_spinner->setGeometry(middleX - 16, middleY - 40, 32, 32);
    m_retryButton->setGeometry(middleX - 40, middleY + 44, 80, 26);
    // In the place of the spinner.
    m_countdownLabel->setGeometry(messageMargin, middleY - 44, width() - 2 * messageMargin, 22);
    fitMessage();
}

} // namespace orvane
