// SPDX-License-Identifier: GPL-3.0-or-later
#include "streaming/tool/YtDlpVersion.h"

#include <QRegularExpression>

namespace orvane {

using namespace Qt::StringLiterals;

std::optional<QDate> releaseDay(const QString& version) {
    static const QRegularExpression form(u"^(\\d{4})\\.(\\d{1,2})\\.(\\d{1,2})(?:\\.|$)"_s);
    const QRegularExpressionMatch match = form.match(version);
    const QDate day(match.captured(1).toInt(), match.captured(2).toInt(),
                    match.captured(3).toInt());
    return day.isValid() ? std::optional(day) : std::nullopt;
}

bool isNewerVersion(const QString& version, const QString& other) {
    const std::optional<QDate> day = releaseDay(version);
    const std::optional<QDate> otherDay = releaseDay(other);
    if (day != otherDay)
        return day && (!otherDay || *day > *otherDay);
    return version > other;
}

QCoro::Task<std::optional<QString>> askVersion(ToolRunner& tools, YtDlpCommand command,
                                               std::stop_token stop) {
    const ProcessRequest request{.program = command.program,
                                 .arguments = command.argumentsFor({u"--version"_s}),
                                 .environment = variables(ToolEnvironment::extendedPath),
                                 .standardError = ProcessRequest::Stream::discard};
    const ProcessOutcome outcome = co_await tools.run(request, stop);
    if (!outcome || !outcome->succeeded())
        co_return std::nullopt;
    const QString printed = outcome->standardOutput.text().value_or(QString()).trimmed();
    if (printed.isEmpty())
        co_return std::nullopt;
    co_return std::optional(printed);
}

} // namespace orvane
