// SPDX-License-Identifier: GPL-3.0-or-later
// Only in builds with the sanitizers: what a driver has leaked can be told from our own leaks by
// the name of its library, and a library that was unloaded has none any more.

extern "C" int dlclose(void*) {
    return 0;
}

/// The toolkit forgets a call on the bus, such as that of a new tray icon, whose answer has not
/// come when the program ends.
extern "C" const char* __lsan_default_suppressions() {
    return "leak:libQt6DBus.so";
}
