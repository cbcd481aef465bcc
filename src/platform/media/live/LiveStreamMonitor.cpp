// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/media/live/LiveStreamMonitor.h"

#include <QRegularExpression>

#include <algorithm>

namespace orvane {

using namespace Qt::StringLiterals;

void LiveStreamMonitor::opened(TimePoint now) {
    m_openedAt = now;
}

void LiveStreamMonitor::logged(const QString& line, TimePoint now) {
    std::optional<QString> text = networkWarning(line);
    if (!text)
        return;
    m_lastWarning = Warning{.text = std::move(*text), .time = now};
    if (!m_hasStarted && !m_refusedSince && isRefusal(m_lastWarning->text))
        m_refusedSince = now;
}

void LiveStreamMonitor::started() {
    m_hasStarted = true;
    m_refusedSince.reset();
}

void LiveStreamMonitor::paused(bool isPaused, TimePoint now) {
    m_isPaused = isPaused;
    jumped();
    starved(m_isStarved, now);
}

void LiveStreamMonitor::jumped() {
    m_position.reset();
    m_checksWithoutAdvance = 0;
}

void LiveStreamMonitor::starved(bool isStarved, TimePoint now) {
    m_isStarved = isStarved;
    if (!isStarved || m_isPaused)
        m_starvedSince.reset();
    else if (!m_starvedSince)
        m_starvedSince = now;
}

void LiveStreamMonitor::positioned(Position position) {
    if (m_isPaused)
        return;
    const bool oneStands =
        m_position && (position.time == m_position->time || position.audio == m_position->audio);
    const bool advances = m_expectsBoth ? !oneStands : position != m_position;
    m_checksWithoutAdvance = advances ? 0 : m_checksWithoutAdvance + 1;
    m_position = position;
}

LiveStreamMonitor::Failure LiveStreamMonitor::ended(End end, const QString& reason,
                                                    TimePoint now) const {
    if (std::optional<QString> warning = recentWarning(now))
        return {.text = std::move(warning)};
    if (end == End::endOfStream)
        return {.text = QString::fromLatin1(QT_TRANSLATE_NOOP("Failure", "Stream ended"))};
    return {.text = reason.isEmpty() ? std::nullopt : std::optional(reason)};
}

std::optional<LiveStreamMonitor::Failure> LiveStreamMonitor::dueFailure(TimePoint now) const {
    const std::optional<TimePoint> due = deadline();
    const bool isStuck = m_checksWithoutAdvance >= stallChecks;
    if (!isStuck && (!due || now < *due))
        return std::nullopt;
    const QString silence =
        QString::fromLatin1(m_hasStarted ? QT_TRANSLATE_NOOP("Failure", "Stream stalled")
                                         : QT_TRANSLATE_NOOP("Failure", "No picture arrived"));
    return Failure{.text = recentWarning(now).value_or(silence)};
}

std::optional<LiveStreamMonitor::TimePoint> LiveStreamMonitor::deadline() const {
    std::optional<TimePoint> next;
    const auto consider = [&next](TimePoint time) { next = next ? std::min(*next, time) : time; };
    if (m_starvedSince)
        consider(*m_starvedSince + (isRefused(*m_starvedSince) ? refusalGrace : stallLimit));
    if (m_refusedSince)
        consider(*m_refusedSince + refusalGrace);
    if (m_openedAt && !m_hasStarted)
        consider(*m_openedAt + startLimit);
    return next;
}

bool LiveStreamMonitor::isRefused(TimePoint now) const {
    const std::optional<QString> warning = recentWarning(now);
    return warning && isRefusal(*warning);
}

std::optional<QString> LiveStreamMonitor::recentWarning(TimePoint now) const {
    if (!m_lastWarning || now - m_lastWarning->time > warningLifetime)
        return std::nullopt;
    return m_lastWarning->text;
}

bool isRefusal(const QString& warning) {
    return warning.startsWith(u"HTTP error"_s);
}

QString withoutAddresses(const QString& text) {
    static const QRegularExpression address(
        uR"([\w+.-]+://\S*[^\s.,:;)'"]|(?<=hostname )\S*[^\s:])"_s);
    static const QRegularExpression longNumber(uR"(\d{3,})"_s);
    QString rest = text;
    rest.replace(address, u"…"_s);
    if (!isRefusal(rest))
        rest.replace(longNumber, u"…"_s);
    return rest;
}

std::optional<QString> networkWarning(const QString& line) {
    static const QRegularExpression pattern(
        uR"((?:^|\s)(?:https?|tls|tcp|crypto): (.+)|(HTTP error .+))"_s);
    const QRegularExpressionMatch match = pattern.match(line.trimmed());
    if (!match.hasMatch())
        return std::nullopt;
    return withoutAddresses(match.hasCaptured(2) ? match.captured(2) : match.captured(1));
}

} // namespace orvane
