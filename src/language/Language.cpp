// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/Language.h"

#include <QLocale>
#include <QStringList>

#include <algorithm>

namespace orvane {

using namespace Qt::StringLiterals;

QString code(Language language) {
    switch (language) {
    case Language::arabic:
        return u"ar"_s;
    case Language::french:
        return u"fr"_s;
    case Language::english:
        break;
    }
    return u"en"_s;
}

QString nativeName(Language language) {
    switch (language) {
    case Language::arabic:
        return u"العربية"_s;
    case Language::french:
        return u"Français"_s;
    case Language::english:
        break;
    }
    return u"English"_s;
}

std::optional<Language> languageNamed(const QString& name) {
    const qsizetype end =
        std::ranges::find_if_not(name, [](QChar c) { return c.isLetter(); }) - name.begin();
    const auto* language = std::ranges::find(allLanguages, name.first(end).toLower(), code);
    return language == allLanguages.end() ? std::nullopt : std::optional(*language);
}

Language systemLanguage(const Variables& variable) {
    QString locale;
    for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        locale = variable(name);
        if (!locale.isEmpty())
            break;
    }
    if (locale == u"C" || locale == u"POSIX")
        return Language::english;
    for (const QString& wanted : variable("LANGUAGE").split(u':')) {
        if (const std::optional<Language> language = languageNamed(wanted))
            return *language;
    }
    return languageNamed(locale).value_or(Language::english);
}

Language systemLanguage() {
    return systemLanguage([](const char* name) { return qEnvironmentVariable(name); });
}

QLocale localeOf(Language language, const QLocale& system) {
    const QLocale own(code(language));
    return system.language() == own.language() ? system : own;
}

} // namespace orvane
