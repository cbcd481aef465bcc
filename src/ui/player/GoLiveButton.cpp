// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/player/GoLiveButton.h"

#include "language/Translation.h"

#include "ui/theme/SystemColors.h"

#include <QFontMetrics>
#include <QPainter>

#include <algorithm>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

constexpr int textPixelSize = 12;
constexpr int buttonHeight = 24;
constexpr int marginRight = 6;
constexpr QChar minus{0x2212};

QString inLocalDigits(const QString& text) {
    QString local;
    for (const QChar character : text)
        local += character.isDigit() ? localNumber(character.digitValue()) : QString(character);
    return local;
}

} // namespace

QString clockTime(std::chrono::milliseconds time) {
    constexpr int sixty = 60;
    const auto seconds = std::chrono::round<std::chrono::seconds>(time).count();
    const QString minutesAndSeconds =
        u"%1:%2"_s.arg(seconds / sixty % sixty).arg(seconds % sixty, 2, 10, QLatin1Char('0'));
    const auto hours = seconds / sixty / sixty;
    if (hours == 0)
        return inLocalDigits(minutesAndSeconds);
    return inLocalDigits(u"%1:%2"_s.arg(hours).arg(minutesAndSeconds.rightJustified(5, u'0')));
}

GoLiveButton::GoLiveButton(int textLeft, QWidget* parent)
    : QAbstractButton(parent), m_textLeft(textLeft) {
    QFont digits = font();
    digits.setPixelSize(textPixelSize);
    digits.setWeight(QFont::DemiBold);
    setFont(digits);
    setFocusPolicy(Qt::NoFocus);
    setToolTip(translated("Player", "Go to live (End)"));
}

void GoLiveButton::setBehind(std::chrono::milliseconds behind) {
    const QString time = clockTime(behind);
    setText(leftToRight(minus + time));
    setAccessibleName(translated("Player", "%1 behind live, go to live").arg(leftToRight(time)));
}

QSize GoLiveButton::sizeHint() const {
    // The widest digit, so that the name beside it stands still.
    QString widest = text();
    std::ranges::replace_if(widest, [](QChar c) { return c.isDigit(); }, QChar(u'0'));
    return {m_textLeft + fontMetrics().horizontalAdvance(widest) + marginRight, buttonHeight};
}

void GoLiveButton::paintEvent(QPaintEvent*) {
    QPainter(this).drawPixmap(0, 0, m_figure.get(*this, text(), [this](QPainter& painter) {
        painter.setPen(SystemColors::barText);
        const bool isMirrored = isRightToLeftInterface();
        const QRect place = isMirrored ? rect().adjusted(0, 0, -m_textLeft, 0)
                                       : rect().adjusted(m_textLeft, 0, 0, 0);
        painter.drawText(place,
                         (isMirrored ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignAbsolute |
                             Qt::AlignVCenter,
                         text());
    }));
}

} // namespace orvane
