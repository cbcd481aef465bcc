// SPDX-License-Identifier: GPL-3.0-or-later
#include "fuzz/Fuzz.h"

#include "app/commands/Verb.h"

using namespace orvane;

/// What another start sends to the running copy, one line on its socket.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto verbs = Verb::decode(fuzz::bytes(data, size));
    if (!verbs)
        return 0;
    const QByteArray message = Verb::encode(*verbs);
    fuzz::require(!message.contains('\n'), "a message is one line");
    const auto again = Verb::decode(message);
    fuzz::require(again && Verb::encode(*again) == message, "what is sent is what arrives");
    return 0;
}
