# Debian packages from an install: `cpack -G DEB` in a build folder gives
# libnvdialogs6 (the shared libraries and nvstudio) and libnvdialogs-dev
# (headers, CMake and pkg-config files), which depends on the first.

set(CPACK_PACKAGE_NAME libnvdialogs)
set(CPACK_PACKAGE_VENDOR "libnvdialogs developers")
set(CPACK_PACKAGE_CONTACT "libnvdialogs developers <libnvdialogs@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY
    "Qt 5 Widgets dialogs, views and wizards of the access-control client")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_COMPONENTS_ALL runtime dev)
set(CPACK_COMPONENT_DEV_DEPENDS runtime)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
set(CPACK_DEBIAN_PACKAGE_SECTION libs)

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME libnvdialogs${PROJECT_VERSION_MAJOR})
# dpkg-shlibdeps reads the Qt and C++ runtime packages off the binaries;
# the SQLite driver is a plugin, loaded by name, so it is listed by hand.
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_DEPENDS "libqt5sql5-sqlite")
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
# Our own libraries sit in the package itself, not in another one.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})

set(CPACK_DEBIAN_DEV_PACKAGE_NAME libnvdialogs-dev)
set(CPACK_DEBIAN_DEV_PACKAGE_SECTION libdevel)
# pkg-config resolves the reader library's private OpenSSL module even for
# a shared link, so its .pc file must be there.
set(CPACK_DEBIAN_DEV_PACKAGE_DEPENDS "qtbase5-dev (>= 5.15), libssl-dev (>= 3.0)")

include(CPack)
