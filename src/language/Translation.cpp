// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/Translation.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QLibraryInfo>

#include <memory>
#include <vector>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

constexpr QChar leftToRightIsolate(0x2066);
constexpr QChar firstStrongIsolate(0x2068);
constexpr QChar popDirectionalIsolate(0x2069);

struct Texts {
    Language language = Language::english;
    QLocale locale = QLocale::c();
    QTranslator translator;
};

/// Those of each translation that lives, the newest last.
std::vector<std::unique_ptr<Texts>>& all() {
    static std::vector<std::unique_ptr<Texts>> texts;
    return texts;
}

const Texts* current() {
    return all().empty() ? nullptr : all().back().get();
}

} // namespace

Translation::Translation(Language language) {
    Texts& texts = *all().emplace_back(std::make_unique<Texts>());
    if (!texts.translator.load(u":/translations/orvane_%1.qm"_s.arg(code(language))))
        return;
    texts.language = language;
    // English numbers are those of the source, without marks between thousands.
    if (language != Language::english)
        texts.locale = localeOf(language, QLocale(QLocale::system().name()));
}

Translation::~Translation() {
    all().pop_back();
}

void Translation::install() {
    if (current()->language == Language::english)
        return;
    const QString name = u"qtbase_"_s + code(current()->language);
    if (m_toolkit.load(name, QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(&m_toolkit);
    // Also where the toolkit's own texts, which tell it the direction, are not installed.
    QGuiApplication::setLayoutDirection(current()->locale.textDirection());
}

QString translated(const char* context, const char* text, const char* comment, int count) {
    QString result;
    if (current() != nullptr)
        result = current()->translator.translate(context, text, comment, count);
    if (result.isEmpty())
        result = QString::fromUtf8(text);
    return count < 0 ? result : result.replace(u"%n"_s, localNumber(count));
}

QString translated(const char* context, const QString& text) {
    // What a tool prints may hold a null character, at which the text would end.
    if (text.contains(QChar::Null))
        return text;
    return translated(context, text.toUtf8().constData());
}

QString localNumber(qint64 number) {
    return current() != nullptr ? current()->locale.toString(number) : QString::number(number);
}

QString localDataSize(qint64 bytes) {
    const bool isEnglish = current() == nullptr || current()->language == Language::english;
    const QLocale locale = isEnglish ? QLocale(QLocale::English) : current()->locale;
    return locale.formattedDataSize(bytes, 1, QLocale::DataSizeSIFormat);
}

bool isRightToLeftInterface() {
    return current() != nullptr && current()->locale.textDirection() == Qt::RightToLeft;
}

QString isolated(const QString& text) {
    return isRightToLeftInterface() ? firstStrongIsolate + text + popDirectionalIsolate : text;
}

QString leftToRight(const QString& text) {
    return isRightToLeftInterface() ? leftToRightIsolate + text + popDirectionalIsolate : text;
}

} // namespace orvane
