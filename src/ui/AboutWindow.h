// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QString>

namespace orvane {

/// Names the program, its version and what it does, with a link to its web page. A window of fixed
/// size that is put away by its own button or the Escape key, and kept for the next time. Above
/// other windows like the player, which may fill the screen. Made by the application controller
/// when it is first asked for; main thread.
class AboutWindow final : public QDialog {
    Q_OBJECT

public:
    /// With the address of the web page that was built in.
    AboutWindow();
    /// An address that is none of the web has no button and opens nothing.
    explicit AboutWindow(const QString& website);

    void openWebsite() const;

protected:
    void changeEvent(QEvent* event) override;

private:
    /// Takes over the colours and the size of text that the desktop has now.
    void adoptDesktop();
    /// Puts everything in its place, further down where what is above needs more room.
    void arrange(double scale);

    QString m_website;
    QLabel* m_icon;
    QLabel* m_name;
    QLabel* m_version;
    QLabel* m_description;
    QPushButton* m_websiteButton;
};

} // namespace orvane
