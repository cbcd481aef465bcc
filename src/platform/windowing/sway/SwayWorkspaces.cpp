// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/windowing/sway/SwayWorkspaces.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <chrono>
#include <utility>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

constexpr std::chrono::seconds interval{1};

QRect rectangle(const QJsonObject& rect) {
    return {rect[u"x"_s].toInt(), rect[u"y"_s].toInt(), rect[u"width"_s].toInt(),
            rect[u"height"_s].toInt()};
}

} // namespace

SwayWorkspaces::SwayWorkspaces() {
    m_next.setSingleShot(true);
    m_next.setInterval(interval);
    connect(&m_sway, &SwaySocket::received, this, &SwayWorkspaces::answered);
    connect(&m_next, &QTimer::timeout, this, &SwayWorkspaces::ask);
    ask();
}

void SwayWorkspaces::setWatched(bool isWatched) {
    m_isWatched = isWatched;
    if (m_isWatched)
        ask();
    else
        m_next.stop();
}

void SwayWorkspaces::ask() {
    m_sway.send(SwaySocket::Kind::getWorkspaces);
}

void SwayWorkspaces::answered(SwaySocket::Kind kind, const QByteArray& payload) {
    if (kind != SwaySocket::Kind::getWorkspaces)
        return;
    QList<QRect> visible;
    for (const QJsonValue& workspace : QJsonDocument::fromJson(payload).array()) {
        if (workspace[u"visible"_s].toBool())
            visible.append(rectangle(workspace[u"rect"_s].toObject()));
    }
    if (m_isWatched)
        m_next.start();
    if (std::exchange(m_visible, visible) != visible)
        Q_EMIT changed();
}

} // namespace orvane
