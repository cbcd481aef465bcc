// SPDX-License-Identifier: GPL-3.0-or-later
#include "updates/UpdaterController.h"

#include "base/Logging.h"
#include "base/PlainText.h"
#include "base/TaskScope.h"
#include "platform/system/HttpClient.h"
#include "updates/UpdateDownload.h"
#include "updates/UpdaterMessages.h"

#include <utility>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 maximumFeed = 1024 * 1024;
constexpr qint64 maximumNotes = 256 * 1024;
/// Short, because the window is empty meanwhile.
constexpr std::chrono::milliseconds searchTimeout{20000};

/// Returns the release notes as plain text. A version is offered even if they cannot be fetched.
QCoro::Task<QString> notesOf(AppcastItem item, QUrl feed, HttpClient& http, std::stop_token stop) {
    if (!item.notesLink.isEmpty()) {
        const HttpClient::SecureRequest request{.address = feed.resolved(item.notesLink),
                                                .limit = maximumNotes,
                                                .timeout = searchTimeout};
        const auto notes = co_await http.fetchAll(request, stop);
        if (notes)
            co_return plainText(QString::fromUtf8(notes->bytes));
    }
    co_return plainText(item.description);
}

} // namespace

UpdaterController::UpdaterController(UpdaterSettings settings, HttpClient& http, TaskScope& tasks,
                                     std::unique_ptr<UpdaterWindow> window, Reveal reveal)
    : m_settings(std::move(settings)),
      m_key(UpdateKey::parse(m_settings.publicKey)),
      m_http(http),
      m_tasks(tasks),
      m_window(std::move(window)),
      m_reveal(std::move(reveal)) {
    m_window->onAnswer([this](UpdaterAnswer answer) { receive(answer); });
}

UpdaterController::~UpdaterController() {
    stop();
}

void UpdaterController::checkForUpdates() {
    if (m_window->isOpen())
        return m_window->bringToFront();
    if (m_settings.feed.isEmpty() || !m_key)
        return m_window->showMessage(UpdaterMessages::notForThisBuild());
    m_window->showSearch(UpdaterMessages::searching());
    m_tasks.spawn(check(m_task.restart()));
}

void UpdaterController::stop() {
    m_offered.reset();
    m_window->close();
    m_task.cancel();
}

void UpdaterController::receive(UpdaterAnswer answer) {
    if (answer == UpdaterAnswer::dismissed)
        stop();
    else if (m_offered && m_key)
        m_tasks.spawn(download(*std::exchange(m_offered, std::nullopt), *m_key, m_task.restart()));
}

void UpdaterController::fail(const UpdaterMessage& message) {
    qCWarning(logUpdates).noquote() << message.headline << '-' << message.text;
    m_window->showMessage(message);
}

QCoro::Task<> UpdaterController::check(std::stop_token stop) {
    const HttpClient::SecureRequest request{
        .address = QUrl(m_settings.feed), .limit = maximumFeed, .timeout = searchTimeout};
    const auto feed = co_await m_http.fetchAll(request, stop);
    if (stop.stop_requested())
        co_return;
    if (feed)
        evaluate(feed->bytes, stop);
    else
        fail(UpdaterMessages::searchFailed(feed.error()));
}

void UpdaterController::evaluate(const QByteArray& feed, std::stop_token stop) {
    const auto items = parseAppcast(feed);
    if (!items)
        return fail(UpdaterMessages::searchFailed(items.error()));
    const std::optional<AppcastItem> newest = newestUpdate(*items, m_settings.version);
    qCInfo(logUpdates) << "running" << m_settings.version << "newest of" << items->size()
                       << "usable items:" << (newest ? newest->version : u"none newer"_s);
    if (!newest)
        return m_window->showMessage(UpdaterMessages::upToDate(m_settings.version));
    if (const auto refused = refusal(*newest))
        return fail(UpdaterMessages::downloadFailed(*newest, *refused));
    m_tasks.spawn(offer(*newest, std::move(stop)));
}

QCoro::Task<> UpdaterController::offer(AppcastItem item, std::stop_token stop) {
    const QUrl feed(m_settings.feed);
    const QString notes = co_await notesOf(item, feed, m_http, stop);
    if (stop.stop_requested())
        co_return;
    m_offered = item;
    m_window->showOffer(UpdaterMessages::offer(item, m_settings.version), notes);
}

QCoro::Task<> UpdaterController::download(AppcastItem item, UpdateKey key, std::stop_token stop) {
    m_window->showProgress(UpdaterMessages::downloading(item));
    const auto report = [this, length = item.length](qint64 received) {
        m_window->setProgress(static_cast<double>(received) / static_cast<double>(length),
                              UpdaterMessages::progress(received, length));
    };
    report(0);
    UpdateDownload transfer(m_http, item, key, m_settings.downloadFolder, report);
    const auto path = co_await transfer.run(stop);
    if (stop.stop_requested())
        co_return;
    if (!path)
        co_return fail(UpdaterMessages::downloadFailed(item, path.error()));
    qCInfo(logUpdates) << "downloaded and verified" << item.version;
    m_window->showMessage(UpdaterMessages::downloaded(item, *path));
    m_reveal(*path);
}

} // namespace orvane
