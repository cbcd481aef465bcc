// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/settings/AddChannelPage.h"

#include "language/Translation.h"

#include "base/TaskScope.h"
#include "settings/Preferences.h"
#include "state/AppNotification.h"
#include "ui/AccessibleRole.h"
#include "ui/DisplayText.h"
#include "ui/FittedText.h"
#include "ui/Spinner.h"
#include "ui/settings/RoundedBox.h"
#include "ui/theme/SystemColors.h"
#include "ui/theme/TextColor.h"

#include <QHBoxLayout>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>

#include <algorithm>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

constexpr double pageWidth = 480;
constexpr QSizeF previewSize(pageWidth, 60);
constexpr double lineHeight = 20;
constexpr double statusTop = 190;
constexpr int statusLines = 2;
constexpr QSizeF customScrollSize(480, 100);
constexpr double rowHeight = 30;
constexpr double rowTextWidth = 360;

/// Returns the name and the handle, each shortened so that both fit into `width` pixels.
QString rowText(const Channel& channel, const QFontMetrics& metrics, int width) {
    const QString name = singleLineName(channel.nameEn());
    const QString handle = u"  "_s + leftToRight(u"(@%1)"_s.arg(singleLineName(channel.handle())));
    QString text = name + handle;
    // A shortened name can be a little wider than it was asked to be.
    for (int nameWidth = width - metrics.horizontalAdvance(handle);
         metrics.horizontalAdvance(text) > width && nameWidth >= width / 2; nameWidth -= 4)
        text = metrics.elidedText(name, Qt::ElideRight, nameWidth) + handle;
    return metrics.elidedText(text, Qt::ElideRight, width);
}

QPushButton* makeButton(const QString& name, const QString& title) {
    auto* button = new QPushButton(title);
    button->setObjectName(name);
    button->setAutoDefault(true); // Return presses the focused button.
    return button;
}

} // namespace

AddChannelPage::AddChannelPage(Preferences& preferences, NotificationCenter& notifications,
                               TaskScope& tasks, Resolve resolve, const QString& siteHost)
    : m_preferences(preferences),
      m_tasks(tasks),
      m_resolve(std::move(resolve)),
      m_channelInput(new QLineEdit),
      m_resolveButton(makeButton(u"resolveBtn"_s, translated("Settings", "Resolve"))),
      m_busyIndicator(new Spinner({}, this)),
      m_previewBg(new RoundedBox({.background = SystemColors::withAlpha(SystemColors::green, 0.1),
                                  .radius = 8 * scale(),
                                  .border = SystemColors::withAlpha(SystemColors::green, 0.3)})),
      m_customScroll(makeListScroll(u"customScroll"_s)) {
    addInput(siteHost);
    addTypingHint();
    m_textFieldLostKey = notifications.addObserver(AppNotification::textFieldLostKey, [this] {
        if (m_channelInput->hasFocus())
            m_typingHint->show();
    });
    addPreview();
    m_statusLabel = addLabel({}, {20, 170, pageWidth, lineHeight}, {.size = 12});
    m_statusLabel->setObjectName(u"statusLabel"_s);
    m_busyIndicator->setObjectName(u"busyIndicator"_s);

    auto* separator = new QFrame;
    separator->setFrameStyle(QFrame::HLine | QFrame::Plain);
    separator->setForegroundRole(QPalette::PlaceholderText);
    setAccessibleRole(*separator, QAccessible::Separator);
    place(separator, {20, 140, pageWidth, 1});
    addLabel(translated("Settings", "Your Custom Channels"), {20, 120, 300, lineHeight},
             {.size = 13, .weight = QFont::DemiBold});
    place(m_customScroll, {{20, 10}, customScrollSize});
}

void AddChannelPage::addInput(const QString& siteHost) {
    QLabel* explanation =
        addLabel(translated("Settings", "Paste a YouTube channel URL, @handle, or channel name. "
                                        "We'll resolve it and show you the channel before adding."),
                 {}, {.size = 12, .color = QPalette::PlaceholderText});
    explanation->setWordWrap(true);
    place(explanation, {20, 330, 470, 36});
    addCaption(translated("Settings", "YouTube URL:"), {20, 290, 140, lineHeight});

    m_channelInput->setObjectName(u"channelInput"_s);
    m_channelInput->setAccessibleName(translated("Settings", "YouTube URL"));
    m_channelInput->setPlaceholderText(
        translated("Settings", "@handle or %1").arg(leftToRight(siteHost + u"/..."_s)));
    place(m_channelInput, {160, 288, 260, 24});
    place(m_resolveButton, {430, 287, 70, 26});
    connect(m_channelInput, &QLineEdit::returnPressed, this, &AddChannelPage::resolveInput);
    connect(m_resolveButton, &QPushButton::clicked, this, &AddChannelPage::resolveInput);
    // A changed text may be resolved while the previous one is still being resolved.
    connect(m_channelInput, &QLineEdit::textEdited, this,
            [this] { m_resolveButton->setEnabled(true); });
}

void AddChannelPage::addTypingHint() {
    m_typingHint = new QWidget;
    m_typingHint->setObjectName(u"typingHint"_s);
    auto* row = new QHBoxLayout(m_typingHint);
    row->setContentsMargins({});
    auto* text = new QLabel(translated("Settings", "Letters are shortcuts here"));
    text->setTextFormat(Qt::PlainText);
    row->addWidget(text);
    auto* button = makeButton(u"typeInstead"_s, translated("Settings", "Type instead"));
    connect(button, &QPushButton::clicked, this, [this] {
        m_preferences.setShortcutsInTextFields(false);
        m_typingHint->hide();
        focusInput();
    });
    row->addWidget(button);
    place(m_typingHint, {160, 258, 340, 26});
    m_typingHint->hide();
}

void AddChannelPage::addPreview() {
    m_previewBg->setObjectName(u"previewBg"_s);
    place(m_previewBg, {{20, 190}, previewSize});
    auto* content = new FormPage(m_previewBg);
    m_preview = content;
    content->resize(scaled(previewSize));
    m_previewName =
        content->addLabel({}, {12, 22, 350, 20}, {.size = 14, .weight = QFont::DemiBold});
    m_previewName->setObjectName(u"previewName"_s);
    m_previewHandle =
        content->addLabel({}, {12, 4, 350, 18}, {.size = 11, .color = QPalette::PlaceholderText});
    m_previewHandle->setObjectName(u"previewHandle"_s);
    QPushButton* add = makeButton(u"addBtn"_s, translated("Settings", "Add Channel"));
    setTextColor(*add, SystemColors::green);
    connect(add, &QPushButton::clicked, this, &AddChannelPage::addResolvedChannel);
    content->place(add, {374, 14, 96, 30});
    m_previewBg->hide();
}

void AddChannelPage::focusInput() {
    m_channelInput->setFocus();
    m_channelInput->selectAll();
}

void AddChannelPage::resolveChannel(const QString& text) {
    m_channelInput->setText(text);
    resolveInput();
}

void AddChannelPage::resolveInput() {
    const QString input = m_channelInput->text().trimmed();
    m_resolution.cancel();
    setBusy(false);
    if (input.isEmpty())
        return setStatus(translated("Settings", "Please enter a YouTube URL or handle."),
                         Tone::error);
    setStatus(translated("Settings", "Resolving..."), Tone::neutral);
    setBusy(true);
    m_previewBg->hide();
    m_tasks.spawn(resolve(input, m_resolution.restart()));
}

QCoro::Task<> AddChannelPage::resolve(QString input, std::stop_token stop) {
    const QPointer<AddChannelPage> self(this);
    const ChannelResolver::Result result = co_await m_resolve(input, stop);
    if (!self || stop.stop_requested())
        co_return;
    m_resolution.finish();
    setBusy(false);
    showResult(result);
}

void AddChannelPage::showResult(const ChannelResolver::Result& result) {
    m_previewBg->setVisible(result.has_value());
    if (!result)
        return setStatus(result.error().description, Tone::error);
    m_resolvedHandle = result->handle;
    m_resolvedName = result->name;
    setStatus({}, Tone::neutral);
    const auto show = [](QLabel* label, const QString& text) {
        label->setText(label->fontMetrics().elidedText(text, Qt::ElideRight, label->width()));
    };
    show(m_previewName, singleLineName(m_resolvedName));
    show(m_previewHandle, leftToRight(u'@' + singleLineName(m_resolvedHandle)));
}

void AddChannelPage::addResolvedChannel() {
    if (m_resolvedHandle.isEmpty())
        return;
    m_preferences.addCustomChannel(m_resolvedHandle, m_resolvedName);
    m_channelInput->clear();
    m_previewBg->hide();
    setStatus(translated("Settings", "Added %1!").arg(singleLineName(m_resolvedName)),
              Tone::success);
    rebuildCustomList();
    // New channels are added at the end.
    m_customScroll->verticalScrollBar()->setValue(m_customScroll->verticalScrollBar()->maximum());
    m_resolvedHandle.clear();
    m_resolvedName.clear();
    m_channelInput->setFocus(); // The focused button is hidden now.
}

void AddChannelPage::removeCustomChannel(const QString& handle) {
    const auto buttons = [this] { return m_customScroll->findChildren<QPushButton*>(); };
    qsizetype row = 0;
    for (const QPushButton* button : buttons()) {
        if (button->objectName() == handle)
            break;
        ++row;
    }
    m_preferences.removeCustomChannel(handle);
    rebuildCustomList();
    // Keeps the focus at the same row.
    const QList<QPushButton*> remaining = buttons();
    if (remaining.isEmpty())
        m_channelInput->setFocus();
    else
        remaining.at(std::min(row, remaining.size() - 1))->setFocus();
}

void AddChannelPage::setStatus(const QString& text, Tone tone) {
    const QString fitted =
        fittedText(text, m_statusLabel->font(), pageWidth * scale(), statusLines);
    m_statusLabel->setText(fitted);
    m_statusLabel->setToolTip(fitted.endsWith(u'…') ? text.toHtmlEscaped() : QString());
    if (tone == Tone::neutral)
        clearTextColor(*m_statusLabel);
    else
        setTextColor(*m_statusLabel,
                     tone == Tone::success ? SystemColors::green : SystemColors::red);
    m_statusLabel->setForegroundRole(tone == Tone::neutral ? QPalette::PlaceholderText
                                                           : QPalette::WindowText);
    const double height = fitted.contains(u'\n') ? statusLines * lineHeight - 4 : lineHeight;
    place(m_statusLabel, {20, statusTop - height, pageWidth, height});
}

void AddChannelPage::setBusy(bool isBusy) {
    m_resolveButton->setEnabled(!isBusy);
    if (!isBusy)
        return m_busyIndicator->stop();
    const double textWidth = m_statusLabel->sizeHint().width() / scale();
    place(m_busyIndicator, {20 + textWidth + 8, 172, 16, 16});
    m_busyIndicator->start();
}

void AddChannelPage::fontChanged() {
    m_preview->resize(scaled(previewSize));
    rebuildCustomList();
}

void AddChannelPage::rebuildCustomList() {
    showListPage(*m_customScroll, customList());
}

FormPage* AddChannelPage::customList() {
    const QList<Channel> channels = m_preferences.customChannels();
    const QSizeF size(customScrollSize.width() - 20,
                      std::max(double(channels.size()) * rowHeight, customScrollSize.height()));
    auto* list = new FormPage;
    list->resize(scaled(size));
    if (channels.isEmpty())
        list->addLabel(
            translated("Settings", "No custom channels yet. Add one above!"),
            {0, size.height() / 2 - 10, size.width(), lineHeight},
            {.size = 12, .color = QPalette::PlaceholderText, .alignment = Qt::AlignHCenter});
    double y = size.height();
    for (const Channel& channel : channels) {
        y -= rowHeight;
        QLabel* text = list->addLabel({}, {4, y + 6, rowTextWidth, 18}, {.size = 12});
        text->setText(rowText(channel, text->fontMetrics(), text->width()));
        if (text->text().contains(u'…'))
            text->setToolTip(singleLineName(channel.nameEn()).toHtmlEscaped());
        QPushButton* remove = makeButton(channel.handle(), translated("Settings", "Remove"));
        remove->setAccessibleName(
            translated("Settings", "Remove %1").arg(singleLineName(channel.nameEn())));
        remove->setFont(scaledFont(remove->font(), {.size = 11}));
        setTextColor(*remove, SystemColors::red);
        connect(remove, &QPushButton::clicked, this,
                [this, handle = channel.handle()] { removeCustomChannel(handle); });
        list->place(remove, {380, y + 4, 70, 22});
    }
    return list;
}

} // namespace orvane
