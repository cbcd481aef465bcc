// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

/// What libFuzzer calls with each input, on one thread; each fuzzer defines it. Besides the
/// sanitizers' findings, what `require` rejects is a finding. Returns 0.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace orvane::fuzz {

/// Returns a view of the input, which must outlive it.
inline QByteArray bytes(const std::uint8_t* data, std::size_t size) {
    return QByteArray::fromRawData(reinterpret_cast<const char*>(data),
                                   static_cast<qsizetype>(size));
}

/// Takes the next line of `rest`, which may be the last.
inline QByteArray takeLine(QByteArray& rest) {
    const qsizetype end = rest.indexOf('\n');
    QByteArray line = end < 0 ? rest : rest.first(end);
    rest = end < 0 ? QByteArray() : rest.sliced(end + 1);
    return line;
}

/// Reports the input to libFuzzer unless what `promise` says is kept.
inline void require(bool isKept, const char* promise) {
    if (isKept)
        return;
    std::fprintf(stderr, "broken: %s\n", promise);
    std::abort();
}

} // namespace orvane::fuzz
