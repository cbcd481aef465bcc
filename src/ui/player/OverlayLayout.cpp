// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/player/OverlayLayout.h"

#include "model/AppConstants.h"

#include <algorithm>

namespace orvane {

namespace {

constexpr int spinnerSize = 32;
constexpr int spinnerTop = -40;
constexpr int messageMargin = 20;
constexpr int messageTop = -20;
constexpr int messageBottom = 30;
constexpr QSize smallestRetry(80, 26);
constexpr int retryTop = 44;
constexpr int countdownGap = 3;
constexpr int smallestCountdown = 17;
/// Between parts that would meet.
constexpr int gap = 4;

/// Relative to the middle of the overlay; y downwards.
OverlayLayout aboutTheMiddle(int width, const OverlayParts& parts) {
    OverlayLayout layout;
    const QSize retry = parts.retry.expandedTo(smallestRetry);
    layout.retry = QRect({-retry.width() / 2, retryTop}, retry);
    layout.countdown = QRect(-width / 2, layout.retry.bottom() + 1 + countdownGap, width,
                             std::max(parts.countdownHeight, smallestCountdown));
    // A message of many lines grows to both sides, and makes the spinner give way.
    const int needed = parts.messageHeight - (messageBottom - messageTop);
    const int growth = std::max(0, (needed + 1) / 2);
    layout.message = QRect(-width / 2 + messageMargin, messageTop, width - 2 * messageMargin,
                           messageBottom - messageTop)
                         .adjusted(0, -growth, 0, growth);
    if (parts.content == OverlayContent::retry)
        layout.message.moveBottom(std::min(layout.message.bottom(), layout.retry.top() - gap - 1));
    const int textTop = layout.message.center().y() - parts.messageHeight / 2;
    layout.spinner = QRect(-spinnerSize / 2, spinnerTop, spinnerSize, spinnerSize);
    layout.spinner.moveBottom(std::min(layout.spinner.bottom(), textTop - gap - 1));
    return layout;
}

} // namespace

OverlayLayout overlayLayout(QSize overlay, const OverlayParts& parts) {
    OverlayLayout layout = aboutTheMiddle(overlay.width(), parts);
    const bool isError = parts.content == OverlayContent::retry;
    const int textHeight = std::min(parts.messageHeight, layout.message.height());
    const int top = isError ? layout.message.center().y() - textHeight / 2 : layout.spinner.top();
    const int bottom =
        isError ? layout.countdown.bottom() : layout.message.center().y() + textHeight / 2;
    const int area = overlay.height() - static_cast<int>(AppConstants::controlBarHeight);
    int middle = overlay.height() / 2;
    if (middle + bottom >= area || middle + top < 0)
        middle = (area - top - bottom) / 2;
    for (QRect* part : {&layout.spinner, &layout.message, &layout.retry, &layout.countdown})
        part->translate(overlay.width() / 2, middle);
    layout.fits = middle + top >= 0 && middle + bottom < area;
    return layout;
}

} // namespace orvane
