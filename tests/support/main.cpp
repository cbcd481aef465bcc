// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/Translation.h"

#include "platform/media/MpvInstance.h"
#include "settings/UserDefaults.h"

#include <QApplication>

#include <gtest/gtest.h>

#include <cstdio>
#include <string_view>

namespace {

/// Acts as a second copy of the program: writes a key `count` times, or until it is killed if that
/// is 0, and prints "ready" after the first time.
int writePreferences(const char* path, const char* key, int count) {
    orvane::UserDefaults defaults{QString::fromLocal8Bit(path)};
    for (int i = 1; count == 0 || i <= count; ++i) {
        defaults.set(QLatin1StringView(key), i);
        defaults.synchronize();
        if (i == 1) {
            std::puts("ready");
            std::fflush(stdout);
        }
    }
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    if (argc == 5 && std::string_view(argv[1]) == "--write-preferences")
        return writePreferences(argv[2], argv[3], QByteArray(argv[4]).toInt());
    testing::InitGoogleTest(&argc, argv);
    // No test here draws video, so none needs a display.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    const orvane::Translation english(orvane::Language::english);
    orvane::useNumericCLocale();
    return RUN_ALL_TESTS();
}
