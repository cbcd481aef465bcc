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

/// The updater's dialog: a headline, a line or two of text, release notes or a progress bar, and
/// one or two buttons. Not modal. Stays above other windows, because the player does too and may
/// fill the screen. Escape and the window's close button have the effect of Close, Later or Cancel.
/// The widget exists only while the dialog is open.
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
    /// Replaces the contents of the dialog.
    void begin(const UpdaterMessage& message);
    void addBar(const UpdaterMessage& message);
    void addButton(const QString& text, UpdaterAnswer meaning);
    void open();

    std::unique_ptr<QDialog> m_dialog;
    QPointer<QWidget> m_content;
    QPointer<QLabel> m_text;
    QPointer<QProgressBar> m_bar;
    QPointer<QDialogButtonBox> m_buttons;
};

} // namespace orvane
