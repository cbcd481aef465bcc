// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

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

/// Where a person adds channels of their own, after a look at what was found, and removes them.
/// Owned by its window; main thread. What is found is foreign text and shown as such.
class AddChannelPage final : public FormPage {
    Q_OBJECT

public:
    using Resolve =
        std::function<QCoro::Task<ChannelResolver::Result>(QString input, std::stop_token stop)>;

    /// All outlive the page. `siteHost` is the host whose addresses can be pasted.
    AddChannelPage(Preferences& preferences, TaskScope& tasks, Resolve resolve,
                   const QString& siteHost);
    /// Ends a resolution that runs.
    ~AddChannelPage() override;

    /// Puts the text into the field and resolves it.
    void resolveChannel(const QString& text);

    /// Makes the field the one that is typed into.
    void focusInput();

protected:
    void refresh() override { rebuildCustomList(); }

private:
    enum class Tone { neutral, good, bad };

    void addInput(const QString& siteHost);
    void addPreview();
    void resolveInput();
    [[nodiscard]] QCoro::Task<> resolve(QString input);
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
    QPushButton* m_resolveButton;
    Spinner* m_busySign;
    RoundedBox* m_previewBg;
    QLabel* m_previewName;
    QLabel* m_previewHandle;
    QLabel* m_statusLabel;
    QScrollArea* m_customScroll;
    /// What was resolved last and waits to be added.
    QString m_resolvedHandle;
    QString m_resolvedName;
    /// Of the resolution that runs, whose answer is the one that counts.
    std::stop_source m_resolution;
};

} // namespace orvane
