// SPDX-License-Identifier: GPL-3.0-or-later
#include "streaming/Which.h"

namespace orvane {

using namespace Qt::StringLiterals;

QCoro::Task<QString> whichYtDlp(HostFileSystem host, ProcessRunner& processes,
                                std::optional<QProcessEnvironment> environment) {
    const ProcessRequest request{.program = host.systemPath(u"/usr/bin/which"_s),
                                 .arguments = {u"yt-dlp"_s},
                                 .environment = environment,
                                 .standardError = ProcessRequest::Stream::discard};
    const ProcessOutcome outcome = co_await processes.run(request, std::stop_token());
    if (!outcome)
        co_return QString();
    co_return outcome->standardOutput.text().value_or(QString()).trimmed();
}

} // namespace orvane
