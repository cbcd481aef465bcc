// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Cancellation.h"
#include "base/NotificationCenter.h"
#include "streaming/ChannelResolver.h"
#include "ui/FormPage.h"

#include <QCoroTask>

#include <functional>
#include <stop_token>

class QLineEdit;
class QPushButton;
class QScrollArea;

namespace orvane {

class Preferences;
class RoundedBox;
class Spinner;
class TaskScope;

/// Looks up custom channels, shows what was found before adding it, and removes channels. Owned by
/// its window; main thread. Names found are untrusted and shown as plain text.
class AddChannelPage final : public FormPage {
    Q_OBJECT

public:
    using Resolve =
        std::function<QCoro::Task<ChannelResolver::Result>(QString input, std::stop_token stop)>;

    /// All references outlive the page. `siteHost` is the host whose addresses can be pasted.
    AddChannelPage(Preferences& preferences, NotificationCenter& notifications, TaskScope& tasks,
                   Resolve resolve, const QString& siteHost);

    /// Puts the text into the input field and resolves it.
    void resolveChannel(const QString& text);

    /// Gives the input field the keyboard focus.
    void focusInput();

protected:
    void refresh() override { rebuildCustomList(); }
    void fontChanged() override;

private:
    enum class Tone { neutral, success, error };

    void addTypingHint();
    void addInput(const QString& siteHost);
    void addPreview();
    void resolveInput();
    [[nodiscard]] QCoro::Task<> resolve(QString input, std::stop_token stop);
    void showResult(const ChannelResolver::Result& result);
    void addResolvedChannel();
    void removeCustomChannel(const QString& handle);
    void setStatus(const QString& text, Tone tone);
    void setBusy(bool isBusy);
    void rebuildCustomList();
    [[nodiscard]] FormPage* customList();

    Preferences& m_preferences;
    TaskScope& m_tasks;
    Resolve m_resolve;
    QLineEdit* m_channelInput;
    /// Shown once a shortcut has taken a key from the input.
    QWidget* m_typingHint = nullptr;
    NotificationCenter::Token m_textFieldLostKey;
    QPushButton* m_resolveButton;
    Spinner* m_busyIndicator;
    RoundedBox* m_previewBg;
    FormPage* m_preview = nullptr;
    QLabel* m_previewName;
    QLabel* m_previewHandle;
    QLabel* m_statusLabel;
    QScrollArea* m_customScroll;
    /// The last resolved channel, until it is added.
    QString m_resolvedHandle;
    QString m_resolvedName;
    /// The resolution that runs; starting another one or deleting the page cancels it.
    Cancellation m_resolution;
};

} // namespace orvane
