// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QWidget>

#include <chrono>
#include <functional>
#include <optional>
#include <variant>

class QLabel;
class QPushButton;

namespace orvane {

class Spinner;

/// Covers the video while a stream loads and after it has failed. Part of the player window; main
/// thread. The message is plain text of at most three lines; what it leaves out is in the tooltip.
/// An error is an alert for screen readers, and its Retry button gets the keyboard focus within the
/// window.
class OverlayView final : public QWidget {
    Q_OBJECT

public:
    struct Loading {
        QString message;
    };
    struct Error {
        QString message;
        /// For the tooltip, if the message does not say it all.
        QString details;
    };
    struct Hidden {};
    using State = std::variant<Loading, Error, Hidden>;

    explicit OverlayView(QWidget* parent = nullptr);

    void setState(const State& state);

    /// Shown below an error: the time until the next attempt; nullopt if there will be none.
    void setCountdown(std::optional<std::chrono::seconds> left);

    /// Sets the callback for the Retry button.
    void onRetry(std::function<void()> callback) { m_onRetry = std::move(callback); }

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void showLoading(const QString& message);
    void showError(const Error& error);
    void placeParts();
    [[nodiscard]] bool placeWithLines(int lines);
    [[nodiscard]] bool isError() const;

    Spinner* m_spinner;
    QLabel* m_loadingLabel;
    /// What an error consists of.
    QWidget* m_alert;
    QLabel* m_errorLabel;
    QPushButton* m_retryButton;
    QLabel* m_countdownLabel;
    QString m_message;
    QString m_details;
    std::function<void()> m_onRetry;
};

} // namespace orvane
