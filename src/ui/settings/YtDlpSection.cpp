// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/settings/YtDlpSection.h"

#include "language/Translation.h"

#include "base/TaskScope.h"
#include "ui/theme/SystemColors.h"
#include "ui/theme/TextColor.h"

#include <QGridLayout>
#include <QLabel>
#include <QPointer>
#include <QPushButton>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

QString ageText(int days) {
    constexpr int year = 365;
    constexpr int month = 30;
    if (days <= 0)
        return translated("YtDlp", "of today");
    // A rough age says enough where it is high.
    const int years = days / year;
    if (years >= 2)
        return translated("YtDlp", "%n years old", nullptr, years);
    const int months = days / month;
    if (months >= 2)
        return translated("YtDlp", "%n months old", nullptr, months);
    return translated("YtDlp", "%n days old", nullptr, days);
}

QLabel* makeLine(const QString& name, QWidget* parent) {
    auto* label = new QLabel(parent);
    label->setObjectName(name);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    return label;
}

} // namespace

QString describe(const std::optional<YtDlpStatus>& status, QDate today) {
    if (!status)
        return translated("YtDlp", "yt-dlp is not installed.");
    const QString version = leftToRight(status->version);
    const QString program = leftToRight(status->program);
    const QString text =
        status->released
            ? translated("YtDlp", "yt-dlp %1 (%2), %3")
                  .arg(version, ageText(static_cast<int>(status->released->daysTo(today))), program)
            : translated("YtDlp", "yt-dlp %1, %2").arg(version, program);
    return status->newer.isEmpty() ? text
                                   : translated("YtDlp", "%1. Where the site finds it too old: %2.")
                                         .arg(text, leftToRight(status->newer));
}

YtDlpSection::YtDlpSection(YtDlpUpdates& updates, TaskScope& tasks)
    : m_updates(updates),
      m_tasks(tasks),
      m_status(makeLine(u"ytDlpStatus"_s, this)),
      m_update(new QPushButton(translated("YtDlp", "Update yt-dlp"), this)),
      m_outcome(makeLine(u"ytDlpOutcome"_s, this)) {
    m_update->setObjectName(u"updateYtDlp"_s);
    connect(m_update, &QPushButton::clicked, this, &YtDlpSection::update);
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins({});
    grid->addWidget(m_status, 0, 0, 1, 2);
    grid->addWidget(m_update, 1, 0, Qt::AlignLeft | Qt::AlignTop);
    grid->addWidget(m_outcome, 1, 1);
    grid->setColumnStretch(1, 1);
    grid->setRowStretch(1, 1);
}

void YtDlpSection::refresh() {
    if (!m_update->isEnabled())
        return; // The running update shows its steps.
    m_outcome->clear();
    lookUp();
}

void YtDlpSection::lookUp() {
    m_tasks.spawn(showStatus(m_lookUp.restart()));
}

QCoro::Task<> YtDlpSection::showStatus(std::stop_token stop) {
    const std::optional<YtDlpStatus> status = co_await m_updates.status();
    if (!stop.stop_requested())
        m_status->setText(describe(status, QDate::currentDate()));
}

void YtDlpSection::update() {
    m_update->setEnabled(false);
    m_tasks.spawn(runUpdate());
}

QCoro::Task<> YtDlpSection::runUpdate() {
    const QPointer<YtDlpSection> self(this);
    clearTextColor(*m_outcome);
    std::function<void(QString)> progress = [self](const QString& step) {
        if (self)
            self->m_outcome->setText(step);
    };
    const YtDlpUpdateOutcome::Value outcome = co_await m_updates.update(std::move(progress));
    if (!self)
        co_return;
    showOutcome(outcome);
    m_update->setEnabled(true);
    lookUp();
}

void YtDlpSection::showOutcome(const YtDlpUpdateOutcome::Value& outcome) {
    using namespace YtDlpUpdateOutcome;
    if (const auto* failed = std::get_if<Failed>(&outcome)) {
        setTextColor(*m_outcome, SystemColors::red);
        m_outcome->setText(failed->reason);
    } else if (const auto* updated = std::get_if<Updated>(&outcome)) {
        m_outcome->setText(
            updated->from.isEmpty()
                ? translated("YtDlp", "yt-dlp %1 is installed.").arg(leftToRight(updated->to))
                : translated("YtDlp", "yt-dlp is updated from %1 to %2.")
                      .arg(leftToRight(updated->from), leftToRight(updated->to)));
    } else {
        m_outcome->setText(translated("YtDlp", "yt-dlp %1 is the newest.")
                               .arg(leftToRight(std::get<UpToDate>(outcome).version)));
    }
}

} // namespace orvane
