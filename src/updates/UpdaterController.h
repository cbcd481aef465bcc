// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Cancellation.h"
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

/// The configuration of the updater.
struct UpdaterSettings {
    /// The address of the feed; may be empty.
    QString feed;
    /// In base64; may be empty.
    QByteArray publicKey;
    /// The version of the running program.
    QString version;
    QString downloadFolder;
};

/// Looks for a newer version on request only, offers it, downloads it and shows the file in its
/// folder. Does not unpack, run or install anything. Shows every error in its window and deletes a
/// download that fails. Owned by the application delegate; main thread, which it never blocks.
/// Tasks may outlive this object and then no longer access it.
class UpdaterController {
public:
    /// Shows a file in its folder.
    using Reveal = std::function<void(const QString& path)>;

    UpdaterController(UpdaterSettings settings, HttpClient& http, TaskScope& tasks,
                      std::unique_ptr<UpdaterWindow> window, Reveal reveal);
    ~UpdaterController();
    UpdaterController(const UpdaterController&) = delete;
    UpdaterController& operator=(const UpdaterController&) = delete;

    /// Brings the window to the front if it is still open from an earlier call.
    void checkForUpdates();

    /// Closes the window, aborts transfers and deletes incomplete files, all synchronously. A later
    /// check starts from the beginning.
    void stop();

private:
    void receive(UpdaterAnswer answer);
    [[nodiscard]] QCoro::Task<> check(std::stop_token stop);
    void fail(const UpdaterMessage& message);
    void evaluate(const QByteArray& feed, std::stop_token stop);
    [[nodiscard]] QCoro::Task<> offer(AppcastItem item, std::stop_token stop);
    [[nodiscard]] QCoro::Task<> download(AppcastItem item, UpdateKey key, std::stop_token stop);

    const UpdaterSettings m_settings;
    const std::optional<UpdateKey> m_key;
    HttpClient& m_http;
    TaskScope& m_tasks;
    const std::unique_ptr<UpdaterWindow> m_window;
    const Reveal m_reveal;
    std::optional<AppcastItem> m_offered;
    /// Cancels the current check or download.
    Cancellation m_task;
};

} // namespace orvane
