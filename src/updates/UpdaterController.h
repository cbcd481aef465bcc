// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "updates/Appcast.h"
#include "updates/UpdateSignature.h"
#include "updates/UpdaterWindow.h"

#include <QCoroTask>
#include <QString>

#include <functional>
#include <memory>
#include <optional>
#include <stop_token>

namespace orvane {

class HttpClient;
class TaskScope;

/// Where this copy of the program hears of newer ones, and where they go.
struct UpdaterSettings {
    /// Of the feed; empty when there is none.
    QString feed;
    /// In base64; empty when there is none.
    QByteArray publicKey;
    /// Of the running program.
    QString version;
    QString downloadFolder;
};

/// Looks for a newer version when it is asked to, and never by itself; offers it, downloads it, and
/// shows where it lies. It does not unpack, run or install anything. Every fault is told in the
/// window, and nothing is left of a download that failed. Owned by the application's delegate; main
/// thread, which it never blocks. A task that still runs when this object goes does not touch it
/// any more.
class UpdaterController {
public:
    /// Shows the person a file in its folder.
    using Reveal = std::function<void(const QString& path)>;

    UpdaterController(UpdaterSettings settings, HttpClient& http, TaskScope& tasks,
                      std::unique_ptr<UpdaterWindow> window, Reveal reveal);
    ~UpdaterController();
    UpdaterController(const UpdaterController&) = delete;
    UpdaterController& operator=(const UpdaterController&) = delete;

    /// While there is something to be seen of an earlier call, brings that to the front.
    void checkForUpdates();

    /// Closes the window, breaks transfers off and deletes what they have left, all at once. A
    /// later check starts anew.
    void stop();

private:
    void receive(UpdaterAnswer answer);
    [[nodiscard]] QCoro::Task<> check(std::stop_token stop);
    void tellOf(const QByteArray& feed, std::stop_token stop);
    [[nodiscard]] QCoro::Task<> offer(AppcastItem item, std::stop_token stop);
    [[nodiscard]] QCoro::Task<> download(AppcastItem item, UpdateKey key, std::stop_token stop);

    const UpdaterSettings m_settings;
    const std::optional<UpdateKey> m_key;
    HttpClient& m_http;
    TaskScope& m_tasks;
    const std::unique_ptr<UpdaterWindow> m_window;
    const Reveal m_reveal;
    std::optional<AppcastItem> m_offered;
    std::stop_source m_stop;
};

} // namespace orvane
