// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "language/Language.h"

#include <QLocale>
#include <QString>
#include <QTranslator>

namespace orvane {

/// Holds the texts of one language while it lives; `main` makes it before anything is printed. Of
/// several the newest counts. English texts are those in the source, and its file has the plural
/// forms only. A language whose file is missing is English.
class Translation final {
public:
    explicit Translation(Language language);
    Translation(const Translation&) = delete;
    Translation& operator=(const Translation&) = delete;
    ~Translation();

    /// Gives the toolkit's own texts and the direction of the layout the language, too. Needs the
    /// application object, and comes before the first window.
    void install();

private:
    QTranslator m_toolkit;
};

/// Returns the text in the language of the interface, like QCoreApplication::translate, and also
/// before there is an application object, as what a start prints needs it. "%n" becomes `count`,
/// and chooses the plural form. Any thread; the arguments are found by scripts/translations, so
/// they are literals or marked with QT_TRANSLATE_NOOP.
[[nodiscard]] QString translated(const char* context, const char* text,
                                 const char* comment = nullptr, int count = -1);
[[nodiscard]] QString translated(const char* context, const QString& text);

/// Returns the number in the digits of the language.
[[nodiscard]] QString localNumber(qint64 number);
/// Returns "3.1 MB" in the language.
[[nodiscard]] QString localDataSize(qint64 bytes);

[[nodiscard]] bool isRightToLeftInterface();

/// Keeps what has a direction of its own, such as an address, a handle, a version or the name of a
/// channel, in one piece and in order within a right-to-left text. Elsewhere it stays as it is.
[[nodiscard]] QString isolated(const QString& text);
/// The same for what is always read from the left, whatever its first letter.
[[nodiscard]] QString leftToRight(const QString& text);

} // namespace orvane
