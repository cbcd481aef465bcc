// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/windowing/sway/SwayPlacement.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QJsonObject>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

/// Whether sway tells of this window, which it has just taken notice of.
bool isNewWindow(const QByteArray& event, std::uint32_t window) {
    const QJsonObject object = QJsonDocument::fromJson(event).object();
    return object[u"change"_s] == u"new"_s &&
           object[u"container"_s][u"window"_s].toInteger() == window;
}

} // namespace

SwayPlacement::SwayPlacement() {
    connect(&m_sway, &SwaySocket::received, this,
            [this](SwaySocket::Kind kind, const QByteArray& payload) {
                if (kind == SwaySocket::Kind::windowEvent && isNewWindow(payload, m_window))
                    m_sway.send(SwaySocket::Kind::runCommand, m_command);
            });
    m_sway.send(SwaySocket::Kind::subscribe, R"(["window"])");
}

void SwayPlacement::place(std::uint32_t window, const QRect& frame) {
    m_window = window;
    // Another X server, which DISPLAY may name, can have given this number to another window.
    m_command =
        u"[id=%1 pid=%2] floating enable, border none, sticky enable, "
        u"resize set width %3 px height %4 px, move absolute position %5 px %6 px"_s.arg(window)
            .arg(QCoreApplication::applicationPid())
            .arg(frame.width())
            .arg(frame.height())
            .arg(frame.x())
            .arg(frame.y())
            .toUtf8();
    m_sway.send(SwaySocket::Kind::runCommand, m_command);
}

} // namespace orvane
