set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME gx7100group)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_VENDOR "The GX7100Group developers")
set(CPACK_PACKAGE_CONTACT "The GX7100Group developers <gx7100group@vestra.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "watch and drive many GX-7100 field instruments at once")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"GX7100Group shows the live screen of every connected GX-7100 instrument as a
tile in one window. What is typed goes to exactly the instruments whose tiles
have a red frame.
.
Instruments are reached over the network, where they are found by themselves,
or over a serial line. The package also has gx7100sim, which simulates them.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_LIST_DIR}/open-folders.cmake)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION science)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE ${GX_WEB_SITE})
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
# Half of what a message box says is Qt's; without its translations it would speak two languages.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "qt6-translations-l10n")
# Without the daemon nothing is found by itself; without the other nothing opens the guide.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "avahi-daemon, xdg-utils")
include(CPack)
