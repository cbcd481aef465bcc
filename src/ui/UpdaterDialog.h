// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "updates/UpdaterWindow.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>

#include <memory>

namespace orvane {

/// The updater's window on the screen: a headline, a line or two, perhaps notes or a bar, and one
/// or two buttons. Not modal. Above other windows like the player, which may fill the screen. The
/// Escape key and the window's own button put it away like its Close, Later or Cancel. There is a
/// widget only while it is open.
class UpdaterDialog final : public UpdaterWindow {
public:
    [[nodiscard]] bool isOpen() const override;
    void bringToFront() override;
    void close() override;
    void showSearch(const UpdaterMessage& message) override;
    void showMessage(const UpdaterMessage& message) override;
    void showOffer(const UpdaterMessage& message, const QString& notes) override;
    void showProgress(const UpdaterMessage& message) override;
    void setProgress(double fraction, const QString& text) override;

private:
    void makeDialog();
    /// Replaces what the window shows.
    void begin(const UpdaterMessage& message);
    void addBar();
    void addButton(const QString& text, UpdaterAnswer meaning);
    void open();

    std::unique_ptr<QDialog> m_dialog;
    QPointer<QWidget> m_content;
    QPointer<QLabel> m_text;
    QPointer<QProgressBar> m_bar;
    QPointer<QDialogButtonBox> m_buttons;
};

} // namespace orvane
