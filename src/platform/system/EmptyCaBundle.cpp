// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/system/EmptyCaBundle.h"

#include "base/FileDescriptor.h"

#include <sys/mman.h>
#include <unistd.h>

#include <string_view>

namespace orvane {

namespace {

/// Its private key does not exist any more. An empty file would be reported as a connection error.
constexpr std::string_view authority =
    "-----BEGIN CERTIFICATE-----\n"
    "MIIBejCCAR+gAwIBAgIURs9WMnDUKtUf3O6T9djYUSwGTvYwCgYIKoZIzj0EAwIw\n"
    "ETEPMA0GA1UEAwwGbm9ib2R5MCAXDTI2MTEyMzEwMzExN1oYDzIxMjYxMDMwMTAz\n"
    "MTE3WjARMQ8wDQYDVQQDDAZub2JvZHkwWTATBgcqhkjOPQIBBggqhkjOPQMBBwNC\n"
    "AASOmtWlaRljTRRoH1Y9kGhljTZ8H9Gz7Jmyp+JgqqxSo8DxMtpB33NCb5DM7+tY\n"
    "s/lakBiwFXwWU/uLI5lCMqUBo1MwUTAdBgNVHQ4EFgQU202CS2whjyYbKH8Tyi7N\n"
    "NAitq9owHwYDVR0jBBgwFoAU202CS2whjyYbKH8Tyi7NNAitq9owDwYDVR0TAQH/\n"
    "BAUwAwEB/zAKBggqhkjOPQQDAgNJADBGAiEAi6wO7C1xFluGXn3jB+3jMd7EOlDV\n"
    "/v0tPAVc0VJalNwCIQCJUXEADcNwYrudi1WUtpwqMzsJMWvi22ffTJq9W+d18Q==\n"
    "-----END CERTIFICATE-----\n";

std::string makeFile() {
    static const FileDescriptor file(memfd_create("authorities", MFD_CLOEXEC));
    if (!file.isOpen() ||
        write(file.get(), authority.data(), authority.size()) != ssize_t(authority.size()))
        return {};
    return "/proc/self/fd/" + std::to_string(file.get());
}

} // namespace

const std::string& emptyCaBundlePath() {
    static const std::string path = makeFile();
    return path;
}

} // namespace orvane
