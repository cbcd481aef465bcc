// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>
#include <QString>

namespace orvane {

/// Names the program, its version and what it does, with a link to its web page. Put away by its
/// own button or the Escape key, and kept for the next time. It floats as the player window does,
/// which would lie on it otherwise. Made by the application controller when it is first asked for;
/// main thread.
class AboutWindow final : public QDialog {
    Q_OBJECT

public:
    /// With the address of the web page that was built in.
    AboutWindow();
    /// An address that is none of the web has no button and opens nothing.
    explicit AboutWindow(const QString& website);

    void openWebsite() const;

private:
    QString m_website;
};

} // namespace orvane
