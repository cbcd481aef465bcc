// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <functional>

namespace orvane {

/// What is told a person at one time.
struct UpdaterMessage {
    QString headline;
    QString text;

    friend bool operator==(const UpdaterMessage&, const UpdaterMessage&) = default;
};

/// What the person makes of it: `dismissed` is every way to put the window away.
enum class UpdaterAnswer { download, dismissed };

/// The one small window of the updater, which shows one thing at a time. All texts are plain. Owned
/// by the controller, main thread; no call waits for an answer.
class UpdaterWindow {
public:
    virtual ~UpdaterWindow() = default;

    /// Called when the person answers; the window stays as it is until it is told otherwise.
    void onAnswer(std::function<void(UpdaterAnswer)> callback) { m_onAnswer = std::move(callback); }

    [[nodiscard]] virtual bool isOpen() const = 0;
    virtual void bringToFront() = 0;
    virtual void close() = 0;

    // Each opens the window or replaces what it shows.

    virtual void showSearch(const UpdaterMessage& message) = 0;
    virtual void showMessage(const UpdaterMessage& message) = 0;
    virtual void showOffer(const UpdaterMessage& message, const QString& notes) = 0;
    virtual void showProgress(const UpdaterMessage& message) = 0;

    /// Of a shown progress: from 0 to 1, and the same in words.
    virtual void setProgress(double fraction, const QString& text) = 0;

protected:
    void answer(UpdaterAnswer answer) const {
        if (m_onAnswer)
            m_onAnswer(answer);
    }

private:
    std::function<void(UpdaterAnswer)> m_onAnswer;
};

} // namespace orvane
