# SPDX-License-Identifier: GPL-3.0-or-later
# Read by cpack: names the packages of what is loaded at run time only, which shlibdeps does not see. This machine is asked
# which have the plugins of Qt, as releases of Debian divide them differently.
execute_process(COMMAND qmake6 -query QT_INSTALL_PLUGINS
    OUTPUT_VARIABLE folder OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
# The certificates of the sites; the signs on the buttons, which are boxes without these fonts; the toolkit's own texts in
# the languages of the interface.
set(packages ca-certificates fonts-noto-core fonts-noto-color-emoji qt6-translations-l10n)
foreach(plugin
    # X11, alone and with each way to OpenGL; TLS; the icon in the tray and in windows
    platforms/libqxcb.so
    xcbglintegrations/libqxcb-egl-integration.so
    xcbglintegrations/libqxcb-glx-integration.so
    tls/libqopensslbackend.so
    iconengines/libqsvgicon.so
    imageformats/libqsvg.so)
    execute_process(COMMAND dpkg-query --search ${folder}/${plugin}
        OUTPUT_VARIABLE found COMMAND_ERROR_IS_FATAL ANY)
    string(REGEX REPLACE ":.*" "" package ${found})
    list(APPEND packages ${package})
endforeach()
list(REMOVE_DUPLICATES packages)
list(JOIN packages ", " CPACK_DEBIAN_PACKAGE_DEPENDS)
