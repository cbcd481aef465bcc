// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/settings/SettingsWindow.h"

#include "state/AppNotification.h"
#include "ui/settings/AppearancePage.h"
#include "ui/settings/ChannelsPage.h"
#include "ui/settings/GeneralPage.h"

#include <QShortcut>
#include <QTabWidget>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

constexpr QSizeF contentSize(520, 440);

} // namespace

SettingsWindow::SettingsWindow(const Collaborators& with)
    : QWidget(nullptr, Qt::Window | Qt::WindowStaysOnTopHint | Qt::CustomizeWindowHint |
                           Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                           Qt::WindowCloseButtonHint | Qt::WindowMinimizeButtonHint),
      m_tabView(new QTabWidget(this)),
      m_addChannel(new AddChannelPage(with.preferences, with.tasks, with.resolve, with.siteHost)),
      m_openAddChannel(with.notifications.addObserver(AppNotification::openAddChannel,
                                                      [this] { showCustomChannelsTab(); })) {
    setWindowTitle(u"Orvane Settings"_s);
    setWindowRole(u"settings"_s);
    new FixedSize(*this, contentSize, [this] { m_tabView->setGeometry(rect()); });
    m_tabView->setObjectName(u"tabView"_s);
    m_tabView->addTab(new GeneralPage(with.preferences, with.state, with.notifications,
                                      with.autostart, with.ytDlp, with.tasks),
                      u"General"_s);
    m_tabView->addTab(new ChannelsPage(with.preferences, with.registry), u"Channels"_s);
    m_tabView->addTab(new AppearancePage(with.preferences, with.notifications, with.resizePlayer),
                      u"Appearance"_s);
    m_tabView->addTab(m_addChannel, u"Add Channel"_s);
    connect(new QShortcut(QKeySequence::Close, this), &QShortcut::activated, this, &QWidget::close);
    centreOnScreen(*this);
}

SettingsWindow::~SettingsWindow() = default;

void SettingsWindow::showCustomChannelsTab() {
    m_tabView->setCurrentWidget(m_addChannel);
    m_addChannel->focusInput();
}

void SettingsWindow::resolveChannel(const QString& text) {
    showCustomChannelsTab();
    m_addChannel->resolveChannel(text);
}

} // namespace orvane
