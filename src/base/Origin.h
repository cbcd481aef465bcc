// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringView>

#include <optional>

namespace orvane {

/// Scheme, host and optional port of a web service. An immutable value; any thread.
class Origin {
public:
    /// Returns nullopt unless `text` is an http or https address with a host and without a path or
    /// a query. One trailing slash is allowed.
    [[nodiscard]] static std::optional<Origin> parse(const QString& text);

    /// Returns the origin followed by `path`, which begins with "/" and is appended unchanged.
    [[nodiscard]] QString address(QStringView path) const;

    [[nodiscard]] QString host() const;

    friend bool operator==(const Origin&, const Origin&) = default;

private:
    explicit Origin(QString text);

    QString m_text;
};

} // namespace orvane
