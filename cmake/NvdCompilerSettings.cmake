# Compiler settings shared by every target of the project: the Qt strictness
# macros, KDE's warning set, optional -Werror and sanitizers, and the helper
# that turns a folder into a shared library with an export header and alias.

include(NvdInstall)

include(GenerateExportHeader)

add_compile_definitions(
    QT_NO_CAST_FROM_ASCII
    QT_NO_CAST_TO_ASCII
    QT_USE_QSTRINGBUILDER
    QT_NO_FOREACH
    QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
    QT_NO_URL_CAST_FROM_STRING
    QT_DISABLE_DEPRECATED_BEFORE=0x050F00
)

if(CMAKE_CXX_COMPILER_ID MATCHES "GNU|Clang")
    add_compile_options(-Wall -Wextra -Wnon-virtual-dtor -Woverloaded-virtual
                        -Wsuggest-override -Wshadow)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        # Qt's own headers trip this one in GCC 12 (QList/QHash internals).
        add_compile_options(-Wno-deprecated-copy)
    endif()
    if(NVD_WERROR)
        add_compile_options(-Werror)
    endif()
    if(NVD_BUILD_FUZZERS)
        # Coverage for libFuzzer in every library the fuzzers reach, and
        # AddressSanitizer so that an overread is a finding, not luck.
        add_compile_options(-fsanitize=fuzzer-no-link,address -fno-omit-frame-pointer)
        add_link_options(-fsanitize=address)
    endif()
    if(NVD_SANITIZE)
        string(REPLACE ";" "," _nvd_sanitizers "${NVD_SANITIZE}")
        add_compile_options(-fsanitize=${_nvd_sanitizers} -fno-omit-frame-pointer
                            -fno-sanitize-recover=undefined)
        add_link_options(-fsanitize=${_nvd_sanitizers})
    endif()
endif()

# nvd_add_library(<target> ALIAS <alias> [SOURCES ...] [HEADERS ...]
#                 [INCLUDE_SUBDIRS ...] [PUBLIC_LIBS ...] [PRIVATE_LIBS ...])
# A shared library whose export header is <target>_export.h with the macro
# <TARGET>_EXPORT, hidden visibility by default, and an alias target that
# is also its name in the installed CMake package. The headers among
# SOURCES, plus HEADERS (those without a .h suffix or not compiled), are
# installed; INCLUDE_SUBDIRS are subfolders that callers include from
# directly.
function(nvd_add_library target)
    cmake_parse_arguments(ARG "" "ALIAS"
        "SOURCES;HEADERS;INCLUDE_SUBDIRS;PUBLIC_LIBS;PRIVATE_LIBS" ${ARGN})
    add_library(${target} SHARED)
    target_sources(${target} PRIVATE ${ARG_SOURCES} ${ARG_HEADERS})
    generate_export_header(${target} BASE_NAME ${target})
    target_link_libraries(${target} PUBLIC ${ARG_PUBLIC_LIBS} PRIVATE ${ARG_PRIVATE_LIBS})
    set_target_properties(${target} PROPERTIES
        VERSION ${PROJECT_VERSION}
        SOVERSION ${PROJECT_VERSION_MAJOR})
    if(ARG_ALIAS)
        add_library(${ARG_ALIAS} ALIAS ${target})
        string(REGEX REPLACE "^nvd::" "" export_name ${ARG_ALIAS})
        set_target_properties(${target} PROPERTIES EXPORT_NAME ${export_name})
    endif()

    set(headers ${ARG_SOURCES})
    list(FILTER headers INCLUDE REGEX "\\.h$")
    list(FILTER headers EXCLUDE REGEX "_p\\.h$")
    nvd_install_library(${target}
        HEADERS ${headers} ${ARG_HEADERS}
        INCLUDE_SUBDIRS ${ARG_INCLUDE_SUBDIRS}
        PUBLIC_LIBS ${ARG_PUBLIC_LIBS}
        PRIVATE_LIBS ${ARG_PRIVATE_LIBS})
endfunction()

include(NvdSanitizers)
