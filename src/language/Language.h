// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <array>
#include <functional>
#include <optional>

class QLocale;

namespace orvane {

/// The languages of the interface. Values and pure functions; any thread.
enum class Language { english, arabic, french };

inline constexpr std::array allLanguages{Language::english, Language::arabic, Language::french};

/// Returns "en", "ar" or "fr": the name of the texts' file, and what is stored.
[[nodiscard]] QString code(Language language);

/// Returns what its speakers call the language.
[[nodiscard]] QString nativeName(Language language);

/// Returns the language of a name such as "ar", "ar_EG" or "ar_EG.UTF-8@modifier", or nullopt if
/// there are no texts in it.
[[nodiscard]] std::optional<Language> languageNamed(const QString& name);

/// Returns the value of an environment variable, empty if it is not set.
using Variables = std::function<QString(const char*)>;

/// Chooses as gettext does: the first language in the list LANGUAGE that there are texts in, then
/// the first of LC_ALL, LC_MESSAGES and LANG that is set. The locales "C" and "POSIX" mean English,
/// whatever LANGUAGE says; so does every language without texts.
[[nodiscard]] Language systemLanguage(const Variables& variable);
/// From the environment of this process.
[[nodiscard]] Language systemLanguage();

/// Returns the locale in which an interface in `language` writes numbers: the system's, if that has
/// the same language, as digits differ between countries.
[[nodiscard]] QLocale localeOf(Language language, const QLocale& system);

} // namespace orvane
