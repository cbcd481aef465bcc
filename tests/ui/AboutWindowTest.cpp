// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/AboutWindow.h"

#include "support/FakeBrowser.h"

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

namespace orvane {

using namespace Qt::StringLiterals;
using test::FakeBrowser;

namespace {

TEST(AboutWindowTest, OpensTheWebPage) {
    FakeBrowser browser;
    AboutWindow window(u"https://orvane.example/about?x=1"_s);
    auto* button = window.findChild<QPushButton*>(u"websiteButton"_s);
    EXPECT_EQ(button->text(), u"orvane.example"_s);
    QTest::mouseClick(button, Qt::LeftButton);
    EXPECT_EQ(browser.opened, QStringList{u"https://orvane.example/about?x=1"_s});
    for (const QString& address : {u""_s, u"https://"_s, u"https://a b"_s, u"file:///etc/passwd"_s})
        AboutWindow(address).openWebsite();
    EXPECT_EQ(browser.opened.size(), 1);
}

TEST(AboutWindowTest, IsOnlyHiddenByEscape) {
    AboutWindow window;
    window.show();
    QTest::keyClick(&window, Qt::Key_Escape);
    EXPECT_FALSE(window.isVisible());
    window.show();
    EXPECT_TRUE(window.close() && !window.testAttribute(Qt::WA_DeleteOnClose));
}

TEST(AboutWindowTest, DoesNotClipLargeText) {
    const QFont before = QApplication::font();
    for (const int pixels : {12, 22, 40}) {
        QFont large = before;
        large.setPixelSize(pixels);
        QApplication::setFont(large);
        AboutWindow window(u"https://a-rather-long-name-of-a-site.example"_s);
        EXPECT_EQ(window.height() > 280, pixels > 12);
        for (const QLabel* label : window.findChildren<QLabel*>()) {
            const bool isWrapped = label->wordWrap();
            const QSize needed = isWrapped
                                     ? QSize(0, label->heightForWidth(label->width()))
                                     : label->fontMetrics().boundingRect(label->text()).size();
            EXPECT_EQ(label->size().expandedTo(needed), label->size())
                << label->text().toStdString();
        }
        const auto* button = window.findChild<QPushButton*>();
        EXPECT_GT(button->width(), button->fontMetrics().horizontalAdvance(button->text()));
        EXPECT_GE(button->height(), button->fontMetrics().height());
    }
    QApplication::setFont(before);
}

} // namespace
} // namespace orvane
