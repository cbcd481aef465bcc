// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

#include <optional>
#include <span>

namespace orvane {

/// The public half of the Ed25519 key that updates are signed with: who holds the other half is
/// whom the program trusts. An immutable value; any thread.
class UpdateKey {
public:
    /// Nothing unless `base64` is 32 bytes that can be such a key.
    [[nodiscard]] static std::optional<UpdateKey> parse(const QByteArray& base64);

    /// Whether `signature`, in base64, is this key's for these bytes. Takes its time with many
    /// bytes.
    [[nodiscard]] bool hasSigned(std::span<const unsigned char> bytes,
                                 const QByteArray& signature) const;

private:
    explicit UpdateKey(QByteArray bytes);

    QByteArray m_bytes;
};

} // namespace orvane
