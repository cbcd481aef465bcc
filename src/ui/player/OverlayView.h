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
    void setMessage(const QString& message, const QString& details);
    void placeParts();
    void fitMessage(int middleY);

    Spinner* m_spinner;
    QLabel* m_messageLabel;
    QPushButton* m_retryButton;
    QLabel* m_countdownLabel;
    QString m_message;
    QString m_details;
    std::function<void()> m_onRetry;
};

} // namespace orvane
