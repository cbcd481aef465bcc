// SPDX-License-Identifier: GPL-3.0-or-later
#include "fuzz/Fuzz.h"

#include "settings/Preferences.h"
#include "settings/UserDefaults.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <cmath>

using namespace orvane;

namespace {

void readAll(const Preferences& preferences) {
    (void)preferences.resolution();
    (void)preferences.volume();
    (void)preferences.lastChannelID();
    (void)preferences.enabledChannelIDs();
    (void)preferences.favoriteChannelIDs();
    (void)preferences.theme();
    (void)preferences.shortcutsInGhostMode();
    (void)preferences.customChannels();
    fuzz::require(preferences.windowSizePreset() != 0, "a size is not 0");
    const double opacity = preferences.usableWindowOpacity();
    fuzz::require(opacity >= 0.1 && opacity <= 1, "a window is visible");
    const std::optional<QRectF> frame = preferences.windowFrame();
    fuzz::require(!frame || (std::isfinite(frame->x()) && std::isfinite(frame->width())),
                  "a frame has finite numbers");
}

QByteArray contents(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

/// The file of settings, which may have been edited by hand or cut.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("preferences.json"));
    const QByteArray written = fuzz::bytes(data, size);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return 0;
    file.write(written);
    file.close();

    UserDefaults defaults(path);
    Preferences preferences(defaults);
    readAll(preferences);
    preferences.setMuted(true);
    defaults.synchronize();

    const QJsonDocument before = QJsonDocument::fromJson(written);
    QJsonObject expected = before.object();
    expected[QStringLiteral("isMuted")] = true;
    fuzz::require(QJsonDocument::fromJson(contents(path)).object() == expected,
                  "a change keeps all other settings");
    const QByteArray bad = contents(path + QStringLiteral(".bad"));
    fuzz::require(before.isObject() || written.trimmed().isEmpty() || bad == written,
                  "a file that cannot be read is kept");
    return 0;
}
