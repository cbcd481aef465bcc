// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/Translation.h"

#include "support/Gallery.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPixmap>
#include <QPushButton>
#include <QRegularExpression>
#include <QStyleOptionButton>
#include <QTabBar>

#include <gtest/gtest.h>

#include <map>
#include <set>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

/// A widget whose text is drawn in one piece, and the room that it has.
struct Text {
    QString words;
    int needed = 0;
    int room = 0;
};

struct Part {
    QString name;
    QRect frame;
};

/// What one state of a window shows.
struct View {
    int width = 0;
    std::vector<Part> parts;
    std::vector<Text> texts;
    /// Also what only screen readers and tooltips tell.
    QStringList words;
};

using Views = std::map<QString, View>;

int widest(const QWidget& widget, const QString& text) {
    int width = 0;
    for (const QString& line : text.split(u'\n'))
        width = std::max(width, widget.fontMetrics().horizontalAdvance(line));
    return width;
}

Text textOf(const QLabel& label) {
    if (label.wordWrap())
        return {label.text(), label.heightForWidth(label.width()), label.height()};
    return {label.text(), widest(label, label.text()), label.width()};
}

Text textOf(const QPushButton& button) {
    QStyleOptionButton option;
    option.initFrom(&button);
    const QRect room =
        button.style()->subElementRect(QStyle::SE_PushButtonContents, &option, &button);
    return {button.text(), widest(button, button.text()), room.width()};
}

void read(const QWidget& widget, View& view) {
    const auto add = [&](const Text& text) {
        view.texts.push_back(text);
        view.words += text.words;
    };
    view.words += {widget.accessibleName(), widget.accessibleDescription(), widget.toolTip()};
    if (const auto* label = qobject_cast<const QLabel*>(&widget))
        add(textOf(*label));
    else if (const auto* button = qobject_cast<const QPushButton*>(&widget))
        add(textOf(*button));
    else if (const auto* box = qobject_cast<const QCheckBox*>(&widget))
        add({box->text(), box->sizeHint().width(), box->width()});
    else if (const auto* popUp = qobject_cast<const QComboBox*>(&widget))
        add({popUp->currentText(), popUp->sizeHint().width(), popUp->width()});
    else if (const auto* input = qobject_cast<const QLineEdit*>(&widget))
        add({input->placeholderText(), widest(*input, input->placeholderText()),
             input->width() - 8});
    else if (const auto* tabs = qobject_cast<const QTabBar*>(&widget)) {
        for (int i = 0; i < tabs->count(); ++i)
            add({tabs->tabText(i), tabs->tabRect(i).right(), tabs->width()});
    }
}

View viewOf(QWidget& window) {
    View view{.width = window.width(), .words = {window.windowTitle()}};
    read(window, view);
    for (const QAction* action : window.actions())
        view.words += action->text();
    for (const QWidget* widget : window.findChildren<QWidget*>()) {
        if (!widget->isVisible() || widget->window() != &window)
            continue;
        read(*widget, view);
        view.parts.push_back(
            {widget->objectName() + u' ' + QLatin1StringView(widget->metaObject()->className()),
             {widget->mapTo(&window, QPoint()), widget->size()}});
    }
    return view;
}

/// Visits all windows in the language. With ORVANE_PICTURES, also saves their pictures there.
Views visit(Language language) {
    Translation translation(language);
    translation.install();
    const QDir folder(qEnvironmentVariable("ORVANE_PICTURES"));
    Views views;
    test::visitWindows([&](const QString& name, QWidget& window) {
        views[name] = viewOf(window);
        if (qEnvironmentVariableIsSet("ORVANE_PICTURES"))
            window.grab().save(folder.filePath(name + u'-' + code(language) + u".png"_s));
    });
    QApplication::setLayoutDirection(Qt::LeftToRight);
    return views;
}

/// Returns the words in Latin letters that are neither isolated nor a name.
QStringList foreignWords(QString text) {
    static const QRegularExpression isolated(u"[\u2066-\u2068][^\u2066-\u2069]*\u2069?"_s);
    static const QRegularExpression word(u"[A-Za-z]{2,}"_s);
    static const std::set<QString> names{u"Orvane"_s, u"yt"_s, u"dlp"_s, u"YouTube"_s,
                                         u"https"_s,  u"qt"_s, u"br"_s};
    QStringList words;
    for (const QRegularExpressionMatch& match : word.globalMatch(text.remove(isolated))) {
        if (!names.contains(match.captured()))
            words += match.captured();
    }
    return words;
}

/// `width` is that of both windows.
bool isMirrored(const Part& part, const Part& original, int width) {
    constexpr int rounding = 2;
    const QRect& here = part.frame;
    const QRect& there = original.frame;
    const auto isSame = [](int a, int b) { return std::abs(a - b) <= rounding; };
    const int right = width - here.x() - here.width();
    const int rightThere = width - there.x() - there.width();
    // A longer text may grow to the side that it is not aligned to, or to both.
    return isSame(right, there.x()) || isSame(here.x(), rightThere) ||
           isSame(here.x() - right, rightThere - there.x());
}

void expectNothingCut(const Views& views) {
    for (const auto& [state, view] : views) {
        for (const Text& text : view.texts)
            EXPECT_LE(text.needed, text.room)
                << state.toStdString() << ": " << text.words.toStdString();
    }
}

TEST(Windows, AreArabicMirroredAndNotCut) {
    const Views english = visit(Language::english);
    const Views arabic = visit(Language::arabic);
    expectNothingCut(arabic);
    ASSERT_EQ(arabic.size(), english.size());
    for (const auto& [state, view] : arabic) {
        SCOPED_TRACE(state.toStdString());
        for (const QString& words : view.words)
            EXPECT_TRUE(foreignWords(words).isEmpty()) << words.toStdString();
        const View& original = english.at(state);
        ASSERT_EQ(view.parts.size(), original.parts.size());
        // Menus have no parts.
        ASSERT_TRUE(view.parts.empty() || view.width == original.width);
        for (std::size_t i = 0; i < view.parts.size(); ++i)
            EXPECT_TRUE(isMirrored(view.parts[i], original.parts[i], view.width))
                << view.parts[i].name.toStdString();
    }
}

TEST(Windows, AreFrenchAndNotCut) {
    const Views english = visit(Language::english);
    const Views french = visit(Language::french);
    expectNothingCut(french);
    int translatedTexts = 0;
    for (const auto& [state, view] : french) {
        const QStringList& original = english.at(state).words;
        ASSERT_EQ(view.words.size(), original.size()) << state.toStdString();
        for (qsizetype i = 0; i < original.size(); ++i)
            translatedTexts += view.words[i] == original[i] ? 0 : 1;
    }
    EXPECT_GT(translatedTexts, 400);
}

} // namespace
} // namespace orvane
