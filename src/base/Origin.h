// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringView>

#include <optional>

namespace orvane {

/// Scheme, host and optional port of a web service, and nothing more. An immutable value; any
/// thread.
class Origin {
public:
    /// Nothing unless `text` is an http or https address with a host and without path or query. One
    /// slash at the end is tolerated.
    [[nodiscard]] static std::optional<Origin> parse(const QString& text);

    /// `path` begins with "/" and is appended as it is.
    [[nodiscard]] QString address(QStringView path) const;

    /// The host alone.
    [[nodiscard]] QString host() const;

    friend bool operator==(const Origin&, const Origin&) = default;

private:
    explicit Origin(QString text);

    QString m_text;
};

} // namespace orvane
