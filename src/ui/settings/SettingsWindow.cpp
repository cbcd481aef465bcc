// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/settings/SettingsWindow.h"

#include "language/Translation.h"

#include "state/AppNotification.h"
#include "ui/AccessibleRole.h"
#include "ui/settings/AppearancePage.h"
#include "ui/settings/ChannelsPage.h"
#include "ui/settings/GeneralPage.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QKeyEvent>
#include <QShortcut>
#include <QTabWidget>

#include <algorithm>
#include <array>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

constexpr QSizeF contentSize(520, 440);

struct TabKey {
    QKeyCombination keys;
    int step;
};
constexpr std::array tabKeys{
    TabKey{Qt::CTRL | Qt::Key_Tab, 1}, TabKey{Qt::CTRL | Qt::Key_PageDown, 1},
    TabKey{Qt::CTRL | Qt::SHIFT | Qt::Key_Backtab, -1}, TabKey{Qt::CTRL | Qt::Key_PageUp, -1}};

} // namespace

SettingsWindow::SettingsWindow(const Collaborators& with)
    : QWidget(nullptr, Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                           Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint |
                           Qt::WindowMinimizeButtonHint),
      m_tabView(new QTabWidget(this)),
      m_addChannel(new AddChannelPage(with.preferences, with.notifications, with.tasks,
                                      with.resolve, with.siteHost)),
      m_openAddChannel(with.notifications.addObserver(AppNotification::openAddChannel,
                                                      [this] { showCustomChannelsTab(); })) {
    setAccessibleRole(*this, QAccessible::Window);
    setWindowTitle(translated("Settings", "Orvane Settings"));
    setWindowRole(u"settings"_s);
    new FixedSize(*this, contentSize, [this] { m_tabView->setGeometry(rect()); });
    m_tabView->setObjectName(u"tabView"_s);
    m_tabView->addTab(new GeneralPage(with.preferences, with.state, with.notifications,
                                      with.autostart, with.ytDlp, with.tasks),
                      translated("Settings", "General"));
    m_tabView->addTab(new ChannelsPage(with.preferences, with.registry),
                      translated("Settings", "Channels"));
    m_tabView->addTab(new AppearancePage(with.preferences, with.notifications, with.resizePlayer),
                      translated("Settings", "Appearance"));
    m_tabView->addTab(m_addChannel, translated("Settings", "Add Channel"));
    connect(new QShortcut(QKeySequence::Close, this), &QShortcut::activated, this, &QWidget::close);
    addTabKeys();
    centreOnScreen(*this);
}

SettingsWindow::~SettingsWindow() = default;

void SettingsWindow::addTabKeys() {
    // A pop-up with the focus would take some of these keys for itself, and an open one all.
    for (const auto& [keys, step] : tabKeys)
        connect(new QShortcut(QKeySequence(keys), this), &QShortcut::activated, this,
                [this, by = step] { selectNeighbour(by); });
    for (QComboBox* popUp : findChildren<QComboBox*>()) {
        popUp->installEventFilter(this);
        popUp->view()->installEventFilter(this);
    }
}

void SettingsWindow::selectNeighbour(int step) {
    const int count = m_tabView->count();
    m_tabView->setCurrentIndex((m_tabView->currentIndex() + step + count) % count);
}

bool SettingsWindow::eventFilter(QObject*, QEvent* event) {
    if (event->type() != QEvent::KeyPress && event->type() != QEvent::ShortcutOverride)
        return false;
    const QKeyCombination pressed = static_cast<const QKeyEvent*>(event)->keyCombination();
    const auto* keys = std::ranges::find(tabKeys, pressed, &TabKey::keys);
    if (keys == tabKeys.end())
        return false;
    event->accept();
    if (event->type() == QEvent::KeyPress) {
        for (QComboBox* popUp : findChildren<QComboBox*>())
            popUp->hidePopup();
        selectNeighbour(keys->step);
    }
    return true;
}

void SettingsWindow::showCustomChannelsTab() {
    m_tabView->setCurrentWidget(m_addChannel);
    m_addChannel->focusInput();
}

void SettingsWindow::resolveChannel(const QString& text) {
    showCustomChannelsTab();
    m_addChannel->resolveChannel(text);
}

} // namespace orvane
