// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <functional>

namespace orvane {

/// A message to the user.
struct UpdaterMessage {
    QString headline;
    QString text;

    friend bool operator==(const UpdaterMessage&, const UpdaterMessage&) = default;
};

/// The user's answer; every way to close the window is `dismissed`.
enum class UpdaterAnswer { download, dismissed };

/// The updater's only window, which shows one step at a time. All texts are plain text. Owned by
/// the controller; main thread. No call waits for an answer.
class UpdaterWindow {
public:
    virtual ~UpdaterWindow() = default;

    /// Sets the function that is called when the user answers. The window does not change by
    /// itself.
    void onAnswer(std::function<void(UpdaterAnswer)> callback) { m_onAnswer = std::move(callback); }

    [[nodiscard]] virtual bool isOpen() const = 0;
    virtual void bringToFront() = 0;
    virtual void close() = 0;

    // These open the window or replace its contents.

    virtual void showSearch(const UpdaterMessage& message) = 0;
    virtual void showMessage(const UpdaterMessage& message) = 0;
    virtual void showOffer(const UpdaterMessage& message, const QString& notes) = 0;
    virtual void showProgress(const UpdaterMessage& message) = 0;

    /// After `showProgress`. `fraction` is between 0 and 1.
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
