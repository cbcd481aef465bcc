// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/Preferences.h"

#include "model/BuiltInChannels.h"
#include "settings/CustomChannelEntry.h"
#include "settings/UserDefaults.h"

#include <QJsonArray>
#include <QLocale>
#include <QRegularExpression>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

namespace Key {
constexpr QLatin1StringView resolution{"resolution"};
constexpr QLatin1StringView volume{"volume"};
constexpr QLatin1StringView isMuted{"isMuted"};
constexpr QLatin1StringView lastChannelID{"lastChannelID"};
constexpr QLatin1StringView autoPlayLastChannel{"autoPlayLastChannel"};
constexpr QLatin1StringView enabledChannelIDs{"enabledChannelIDs"};
constexpr QLatin1StringView favoriteChannelIDs{"favoriteChannelIDs"};
constexpr QLatin1StringView windowFrame{"windowFrame"};
constexpr QLatin1StringView windowSizePreset{"windowSizePreset"};
constexpr QLatin1StringView windowOpacity{"windowOpacity"};
constexpr QLatin1StringView theme{"theme"};
constexpr QLatin1StringView language{"language"};
constexpr QLatin1StringView ghostModeEnabled{"ghostModeEnabled"};
constexpr QLatin1StringView customChannels{"customChannels"};
constexpr QLatin1StringView shortcutsInTextFields{"shortcutsInTextFields"};
constexpr QLatin1StringView shortcutsInGhostMode{"shortcutsInGhostMode"};
constexpr QLatin1StringView staysAboveFullScreen{"staysAboveFullScreen"};
constexpr QLatin1StringView preparesNextChannels{"preparesNextChannels"};
constexpr QLatin1StringView bufferMinutes{"bufferMinutes"};
constexpr QLatin1StringView onboardingCompleted{"onboardingCompleted"};
} // namespace Key

constexpr int defaultWindowSizePreset = 420;
constexpr std::chrono::minutes defaultBufferLength{5};

template <typename Enum>
Enum storedCase(const UserDefaults& defaults, QLatin1StringView key, Enum fallback) {
    const std::optional<QString> text = defaults.string(key);
    return text ? fromRawValue<Enum>(*text).value_or(fallback) : fallback;
}

/// Formats as "{{x, y}, {width, height}}", with enough digits to read back the same doubles.
QString rectText(const QRectF& rect) {
    const auto number = [](double value) {
        return QString::number(value, 'g', QLocale::FloatingPointShortest);
    };
    return u"{{%1, %2}, {%3, %4}}"_s.arg(number(rect.x()), number(rect.y()), number(rect.width()),
                                         number(rect.height()));
}

QRectF parsedRect(const QString& text) {
    static const QRegularExpression pattern(
        uR"(^\s*\{\s*\{([^,{}]+),([^,{}]+)\}\s*,\s*\{([^,{}]+),([^,{}]+)\}\s*\}\s*$)"_s);
    const QRegularExpressionMatch match = pattern.match(text);
    std::array<double, 4> numbers{};
    for (size_t i = 0; i < numbers.size(); ++i) {
        bool ok = false;
        numbers[i] = match.captured(static_cast<int>(i) + 1).trimmed().toDouble(&ok);
        if (!ok || !std::isfinite(numbers[i]))
            return {};
    }
    return {numbers[0], numbers[1], numbers[2], numbers[3]};
}

bool sameHandle(const QString& a, const QString& b) {
    return a.toLower() == b.toLower();
}

} // namespace

Preferences::Preferences(UserDefaults& defaults) : m_defaults(defaults) {}

Resolution Preferences::resolution() const {
    return storedCase(m_defaults, Key::resolution, Resolution::r480);
}

void Preferences::setResolution(Resolution resolution) {
    m_defaults.set(Key::resolution, rawValue(resolution));
}

float Preferences::volume() const {
    constexpr double most = std::numeric_limits<float>::max();
    return static_cast<float>(
        std::clamp(m_defaults.number(Key::volume).value_or(1.0), -most, most));
}

float Preferences::usableVolume() const {
    return std::clamp(volume(), 0.0F, 1.0F);
}

void Preferences::setVolume(float volume) {
    m_defaults.set(Key::volume, static_cast<double>(volume));
}

bool Preferences::isMuted() const {
    return m_defaults.boolean(Key::isMuted).value_or(false);
}

void Preferences::setMuted(bool muted) {
    m_defaults.set(Key::isMuted, muted);
}

std::optional<QString> Preferences::lastChannelID() const {
    return m_defaults.string(Key::lastChannelID);
}

void Preferences::setLastChannelID(const std::optional<QString>& id) {
    if (id)
        m_defaults.set(Key::lastChannelID, *id);
    else
        m_defaults.remove(Key::lastChannelID);
}

bool Preferences::autoPlayLastChannel() const {
    return m_defaults.boolean(Key::autoPlayLastChannel).value_or(true);
}

void Preferences::setAutoPlayLastChannel(bool on) {
    m_defaults.set(Key::autoPlayLastChannel, on);
}

QSet<QString> Preferences::enabledChannelIDs() const {
    if (const std::optional<QStringList> stored = m_defaults.stringArray(Key::enabledChannelIDs))
        return {stored->begin(), stored->end()};
    QSet<QString> ids;
    for (const Channel& channel : builtInChannels() + customChannels())
        ids.insert(channel.id());
    return ids;
}

void Preferences::setEnabledChannelIDs(const QSet<QString>& ids) {
    m_defaults.set(Key::enabledChannelIDs, QJsonArray::fromStringList(ids.values()));
}

QStringList Preferences::favoriteChannelIDs() const {
    if (const std::optional<QStringList> stored = m_defaults.stringArray(Key::favoriteChannelIDs))
        return *stored;
    QStringList ids;
    for (const Channel& channel : builtInChannels()) {
        if (channel.category() == ChannelCategory::featured)
            ids.append(channel.id());
    }
    return ids;
}

void Preferences::setFavoriteChannelIDs(const QStringList& ids) {
    m_defaults.set(Key::favoriteChannelIDs, QJsonArray::fromStringList(ids));
}

std::optional<QRectF> Preferences::windowFrame() const {
    const std::optional<QString> text = m_defaults.string(Key::windowFrame);
    return text ? std::optional(parsedRect(*text)) : std::nullopt;
}

void Preferences::setWindowFrame(const std::optional<QRectF>& frame) {
    if (frame)
        m_defaults.set(Key::windowFrame, rectText(*frame));
    else
        m_defaults.remove(Key::windowFrame);
}

int Preferences::windowSizePreset() const {
    const int stored = m_defaults.integer(Key::windowSizePreset).value_or(0);
    return stored == 0 ? defaultWindowSizePreset : stored;
}

void Preferences::setWindowSizePreset(int width) {
    m_defaults.set(Key::windowSizePreset, width);
}

double Preferences::windowOpacity() const {
    return m_defaults.number(Key::windowOpacity).value_or(1.0);
}

double Preferences::usableWindowOpacity() const {
    return std::clamp(windowOpacity(), 0.1, 1.0);
}

void Preferences::setWindowOpacity(double opacity) {
    m_defaults.set(Key::windowOpacity, opacity);
}

AppTheme Preferences::theme() const {
    return storedCase(m_defaults, Key::theme, AppTheme::system);
}

void Preferences::setTheme(AppTheme theme) {
    m_defaults.set(Key::theme, rawValue(theme));
}

std::optional<Language> Preferences::language() const {
    return languageNamed(m_defaults.string(Key::language).value_or(QString()));
}

void Preferences::setLanguage(std::optional<Language> language) {
    if (language)
        m_defaults.set(Key::language, code(*language));
    else
        m_defaults.remove(Key::language);
}

bool Preferences::ghostModeEnabled() const {
    return m_defaults.boolean(Key::ghostModeEnabled).value_or(false);
}

void Preferences::setGhostModeEnabled(bool on) {
    m_defaults.set(Key::ghostModeEnabled, on);
}

QList<Channel> Preferences::customChannels() const {
    const std::optional<QString> text = m_defaults.string(Key::customChannels);
    if (!text)
        return {};
    QList<Channel> channels;
    for (const CustomChannelEntry& entry :
         decodeCustomChannels(*text).value_or(QList<CustomChannelEntry>()))
        channels.append(Channel::custom(entry.handle, entry.name));
    return channels;
}

void Preferences::setCustomChannels(const QList<Channel>& channels) {
    QList<CustomChannelEntry> entries;
    entries.reserve(channels.size());
    for (const Channel& channel : channels)
        entries.append({channel.handle(), channel.nameEn()});
    m_defaults.set(Key::customChannels, encodeCustomChannels(entries));
}

void Preferences::addCustomChannel(const QString& handle, const QString& name) {
    QList<Channel> channels = customChannels();
    const Channel added = Channel::custom(handle, name);
    const auto isSame = [&](const Channel& c) { return sameHandle(c.handle(), handle); };
    if (std::ranges::any_of(channels, isSame))
        return;
    channels.append(added);
    setCustomChannels(channels);

    QSet<QString> enabled = enabledChannelIDs();
    enabled.insert(added.id());
    setEnabledChannelIDs(enabled);
}

void Preferences::removeCustomChannel(const QString& handle) {
    QList<Channel> channels = customChannels();
    channels.removeIf([&](const Channel& c) { return sameHandle(c.handle(), handle); });
    setCustomChannels(channels);
}

bool Preferences::shortcutsInTextFields() const {
    return m_defaults.boolean(Key::shortcutsInTextFields).value_or(true);
}

void Preferences::setShortcutsInTextFields(bool on) {
    m_defaults.set(Key::shortcutsInTextFields, on);
}

bool Preferences::staysAboveFullScreen() const {
    return m_defaults.boolean(Key::staysAboveFullScreen).value_or(true);
}

void Preferences::setStaysAboveFullScreen(bool on) {
    m_defaults.set(Key::staysAboveFullScreen, on);
}

std::optional<bool> Preferences::shortcutsInGhostMode() const {
    return m_defaults.boolean(Key::shortcutsInGhostMode);
}

void Preferences::setShortcutsInGhostMode(bool on) {
    m_defaults.set(Key::shortcutsInGhostMode, on);
}

bool Preferences::preparesNextChannels() const {
    return m_defaults.boolean(Key::preparesNextChannels).value_or(true);
}

void Preferences::setPreparesNextChannels(bool on) {
    m_defaults.set(Key::preparesNextChannels, on);
}

std::chrono::minutes Preferences::bufferLength() const {
    const std::chrono::minutes stored(m_defaults.integer(Key::bufferMinutes).value_or(-1));
    return std::ranges::find(bufferLengths, stored) == bufferLengths.end() ? defaultBufferLength
                                                                           : stored;
}

void Preferences::setBufferLength(std::chrono::minutes length) {
    m_defaults.set(Key::bufferMinutes, static_cast<int>(length.count()));
}

bool Preferences::onboardingCompleted() const {
    return m_defaults.boolean(Key::onboardingCompleted).value_or(false);
}

void Preferences::setOnboardingCompleted(bool completed) {
    m_defaults.set(Key::onboardingCompleted, completed);
}

} // namespace orvane
