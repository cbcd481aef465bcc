// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>
#include <QString>

class QPushButton;

namespace orvane {

/// Shows the program's name, version and purpose, with a link to its web page. Closing it, by its
/// button or the Escape key, only hides it. It stays on top like the player window, which would
/// cover it otherwise. Created by the application controller on first use; main thread.
class AboutWindow final : public QDialog {
    Q_OBJECT

public:
    /// Links to the web page that the build was configured with.
    AboutWindow();
    /// Without a valid http or https address there is no button and `openWebsite` does nothing.
    explicit AboutWindow(const QString& website);

    void openWebsite() const;

private:
    /// Returns null without an address.
    [[nodiscard]] QPushButton* makeButton();

    QString m_website;
};

} // namespace orvane
