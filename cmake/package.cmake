# The Debian package, made by "cpack" (scripts/package.sh).

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME zarvela)
set(CPACK_PACKAGE_VENDOR "The Zarvela developers")
set(CPACK_PACKAGE_CONTACT "The Zarvela developers <developers@zarvela.invalid>")
set(CPACK_PACKAGE_DESCRIPTION "Every page is a tab of one window; tabs can be locked, named and spared, and sets of
pages are plain files that open together. A pop-up blocker with patterns of one's own, quick searches, favorites as
files, security zones that bind the engine, and a window that is arranged as its user likes.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION web)
# The libraries are asked for their packages; our own module lies in no folder of the system's.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_BINARY_DIR})
# What is loaded at run time: what draws the icons, a package of its own from Debian 13 on.
file(STRINGS /etc/os-release zv_release REGEX "^VERSION_ID=")
string(REGEX MATCH "[0-9]+" zv_release "${zv_release}")
if(zv_release AND zv_release VERSION_GREATER_EQUAL 13)
  set(CPACK_DEBIAN_PACKAGE_DEPENDS qt6-svg-plugins)
else()
  set(CPACK_DEBIAN_PACKAGE_DEPENDS libqt6svg6)
endif()
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "xdg-utils, qt6-translations-l10n, qt6-wayland, ca-certificates")
set(CPACK_DEBIAN_PACKAGE_PROVIDES www-browser)
include(CPack)
