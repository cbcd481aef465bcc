// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

#include <optional>
#include <span>

namespace orvane {

/// The public Ed25519 key with which updates are verified. An immutable value; any thread.
class UpdateKey {
public:
    /// Returns nullopt unless `base64` encodes a valid key of 32 bytes.
    [[nodiscard]] static std::optional<UpdateKey> parse(const QByteArray& base64);

    /// Whether `signature`, in base64, is a valid signature of `bytes`. Takes seconds for hundreds
    /// of megabytes.
    [[nodiscard]] bool hasSigned(std::span<const unsigned char> bytes,
                                 const QByteArray& signature) const;

private:
    explicit UpdateKey(QByteArray bytes);

    QByteArray m_bytes;
};

} // namespace orvane
