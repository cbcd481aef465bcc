// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/window/GhostKeysQuestion.h"

#include "language/Translation.h"

#include <QGuiApplication>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

constexpr int margin = 16;
constexpr int textWidth = 320;
/// From the upper edge of the screen, where the window covers little.
constexpr int distance = 40;

} // namespace

GhostKeysQuestion::GhostKeysQuestion(std::function<void(bool)> answer)
    : QDialog(nullptr, Qt::Tool | Qt::WindowStaysOnTopHint | Qt::WindowDoesNotAcceptFocus |
                           Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                           Qt::WindowCloseButtonHint) {
    const QString text =
        translated("GhostKeys", "May Orvane's keys act while you type in other programs? "
                                "If not, they act in Orvane's own windows only.");
    setWindowTitle(translated("GhostKeys", "Orvane: Ghost Mode"));
    setAccessibleName(translated("GhostKeys", "Keys in ghost mode"));
    setAccessibleDescription(text);
    setAttribute(Qt::WA_ShowWithoutActivating);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(margin, margin, margin, margin);
    column->setSpacing(margin);
    column->setSizeConstraint(QLayout::SetFixedSize);
    auto* label = new QLabel(text);
    label->setWordWrap(true);
    label->setFixedWidth(textWidth);
    column->addWidget(label);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    for (const auto& [title, isAllowed] : {std::pair(translated("GhostKeys", "Not now"), false),
                                           {translated("GhostKeys", "Allow"), true}}) {
        auto* button = new QPushButton(title);
        button->setFocusPolicy(Qt::NoFocus);
        connect(button, &QPushButton::clicked, this, [answer, isAllowed] { answer(isAllowed); });
        buttons->addWidget(button);
    }
    column->addLayout(buttons);
    adjustSize();
    const QRect area = QGuiApplication::primaryScreen()->availableGeometry();
    move(area.center().x() - width() / 2, area.top() + distance);
}

} // namespace orvane
