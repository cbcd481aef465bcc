// SPDX-License-Identifier: GPL-3.0-or-later
#include "updates/UpdateSignature.h"

#include <sodium.h>

namespace orvane {

namespace {

/// Returns nullopt unless the text is valid base64 of exactly `size` bytes.
std::optional<QByteArray> decode(const QByteArray& base64, qsizetype size) {
    const auto decoded = QByteArray::fromBase64Encoding(
        base64.trimmed(), QByteArray::Base64Encoding | QByteArray::AbortOnBase64DecodingErrors);
    if (!decoded || decoded.decoded.size() != size)
        return std::nullopt;
    return decoded.decoded;
}

const unsigned char* raw(const QByteArray& bytes) {
    return reinterpret_cast<const unsigned char*>(bytes.constData());
}

} // namespace

UpdateKey::UpdateKey(QByteArray bytes) : m_bytes(std::move(bytes)) {}

std::optional<UpdateKey> UpdateKey::parse(const QByteArray& base64) {
    const std::optional<QByteArray> bytes = decode(base64, crypto_sign_PUBLICKEYBYTES);
    if (!bytes || sodium_init() < 0 || crypto_core_ed25519_is_valid_point(raw(*bytes)) == 0)
        return std::nullopt;
    return UpdateKey(*bytes);
}

bool UpdateKey::hasSigned(std::span<const unsigned char> bytes, const QByteArray& signature) const {
    const std::optional<QByteArray> decoded = decode(signature, crypto_sign_BYTES);
    return decoded && crypto_sign_verify_detached(raw(*decoded), bytes.data(), bytes.size(),
                                                  raw(m_bytes)) == 0;
}

} // namespace orvane
