// SPDX-License-Identifier: GPL-3.0-or-later
// Only for builds with sanitizers: keeps libraries loaded, as leaks of a driver are recognised by
// the name of its library, which is unknown after the library was unloaded.

extern "C" int dlclose(void*) {
    return 0;
}

/// QtDBus leaks a call that has had no answer when the program ends, such as that of a new tray
/// icon. FFmpeg leaks the former segments of a list whose next version it was told to stop reading.
extern "C" const char* __lsan_default_suppressions() {
    return "leak:libQt6DBus.so\nleak:libavutil.so";
}
