# Install rules for the shared libraries, so that a client developer can
# build against an installed copy: headers under include/nvdialogs/<library>,
# a CMake package (find_package(NvDialogs) gives the nvd:: targets the tree
# itself uses), one pkg-config file per library and Debian packages.
#
# Two install components: "runtime" (the shared objects and nvstudio) and
# "dev" (headers, the unversioned .so links, CMake and pkg-config files).

include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(NVD_INSTALL_CMAKEDIR ${CMAKE_INSTALL_LIBDIR}/cmake/NvDialogs)
set(NVD_INSTALL_PKGCONFIGDIR ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
set(_nvd_pc_template ${CMAKE_CURRENT_LIST_DIR}/nvdlibrary.pc.in)
set(_nvd_config_template ${CMAKE_CURRENT_LIST_DIR}/NvDialogsConfig.cmake.in)

# pkg-config answers for ${pcfiledir}, so the files stay right wherever the
# tree is installed (cmake --install --prefix, a .deb, a copied folder).
file(RELATIVE_PATH _nvd_pc_to_prefix
    /prefix/${NVD_INSTALL_PKGCONFIGDIR} /prefix)
string(REGEX REPLACE "/$" "" _nvd_pc_to_prefix "${_nvd_pc_to_prefix}")

# pkg-config module names for a list of link items: our own targets by
# their library name, Qt5::Widgets as Qt5Widgets, OpenSSL's as OpenSSL's
# own modules.
function(_nvd_pc_modules out)
    set(modules "")
    foreach(lib IN LISTS ARGN)
        if(TARGET ${lib})
            get_target_property(real ${lib} ALIASED_TARGET)
            if(real)
                list(APPEND modules ${real})
            elseif(lib MATCHES "^Qt5::(.+)$")
                list(APPEND modules Qt5${CMAKE_MATCH_1})
            elseif(lib STREQUAL "OpenSSL::Crypto")
                list(APPEND modules libcrypto)
            else()
                list(APPEND modules ${lib})
            endif()
        endif()
    endforeach()
    string(REPLACE ";" " " modules "${modules}")
    set(${out} "${modules}" PARENT_SCOPE)
endfunction()

# nvd_install_library(<target> HEADERS ... [INCLUDE_SUBDIRS ...]
#                     [PUBLIC_LIBS ...] [PRIVATE_LIBS ...])
# Called by nvd_add_library: sets the build and install include folders,
# installs the library, its headers (keeping their subfolders) and its
# export header, and writes its pkg-config file.
function(nvd_install_library target)
    cmake_parse_arguments(ARG "" "" "HEADERS;INCLUDE_SUBDIRS;PUBLIC_LIBS;PRIVATE_LIBS" ${ARGN})
    set(incdir ${CMAKE_INSTALL_INCLUDEDIR}/nvdialogs/${target})

    set(build_dirs ${CMAKE_CURRENT_SOURCE_DIR} ${CMAKE_CURRENT_BINARY_DIR})
    set(install_dirs ${incdir})
    set(pc_cflags "-I\${includedir}/nvdialogs/${target}")
    foreach(sub IN LISTS ARG_INCLUDE_SUBDIRS)
        list(APPEND build_dirs ${CMAKE_CURRENT_SOURCE_DIR}/${sub})
        list(APPEND install_dirs ${incdir}/${sub})
        string(APPEND pc_cflags " -I\${includedir}/nvdialogs/${target}/${sub}")
    endforeach()
    target_include_directories(${target} PUBLIC
        "$<BUILD_INTERFACE:${build_dirs}>"
        "$<INSTALL_INTERFACE:${install_dirs}>")

    install(TARGETS ${target} EXPORT NvDialogsTargets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
            COMPONENT runtime NAMELINK_COMPONENT dev)
    foreach(header IN LISTS ARG_HEADERS)
        get_filename_component(sub "${header}" DIRECTORY)
        install(FILES ${header} DESTINATION ${incdir}/${sub} COMPONENT dev)
    endforeach()
    install(FILES ${CMAKE_CURRENT_BINARY_DIR}/${target}_export.h
        DESTINATION ${incdir} COMPONENT dev)

    _nvd_pc_modules(pc_requires ${ARG_PUBLIC_LIBS})
    _nvd_pc_modules(pc_requires_private ${ARG_PRIVATE_LIBS})
    set(pc_prefix "\${pcfiledir}/${_nvd_pc_to_prefix}")
    set(pc_name ${target})
    configure_file(${_nvd_pc_template} ${CMAKE_CURRENT_BINARY_DIR}/${target}.pc @ONLY)
    install(FILES ${CMAKE_CURRENT_BINARY_DIR}/${target}.pc
        DESTINATION ${NVD_INSTALL_PKGCONFIGDIR} COMPONENT dev)
endfunction()

# The CMake package: every library installed above as nvd::<name>, with a
# config file that finds Qt first and a version file.
function(nvd_install_package)
    install(EXPORT NvDialogsTargets
        NAMESPACE nvd::
        FILE NvDialogsTargets.cmake
        DESTINATION ${NVD_INSTALL_CMAKEDIR}
        COMPONENT dev)
    configure_package_config_file(${_nvd_config_template}
        ${PROJECT_BINARY_DIR}/NvDialogsConfig.cmake
        INSTALL_DESTINATION ${NVD_INSTALL_CMAKEDIR})
    # The major version is the SOVERSION: within it the ABI holds.
    write_basic_package_version_file(${PROJECT_BINARY_DIR}/NvDialogsConfigVersion.cmake
        VERSION ${PROJECT_VERSION}
        COMPATIBILITY SameMajorVersion)
    install(FILES
        ${PROJECT_BINARY_DIR}/NvDialogsConfig.cmake
        ${PROJECT_BINARY_DIR}/NvDialogsConfigVersion.cmake
        DESTINATION ${NVD_INSTALL_CMAKEDIR}
        COMPONENT dev)
endfunction()
