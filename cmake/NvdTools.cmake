# Developer targets: `lupdate` refreshes the translation source from every
# tr() text, `format` runs clang-format over the tree. Neither is part of
# the default build.

find_program(NVD_LUPDATE NAMES lupdate-qt5 lupdate PATHS /usr/lib/qt5/bin)
if(NVD_LUPDATE)
    add_custom_target(lupdate
        COMMAND ${NVD_LUPDATE} -recursive -no-obsolete -locations relative
                ${PROJECT_SOURCE_DIR}/src ${PROJECT_SOURCE_DIR}/platform ${PROJECT_SOURCE_DIR}/app
                -ts ${PROJECT_SOURCE_DIR}/translations/libnvdialogs_en.ts
        WORKING_DIRECTORY ${PROJECT_SOURCE_DIR}
        COMMENT "Updating translations/libnvdialogs_en.ts"
        VERBATIM)
endif()

find_program(NVD_CLANG_FORMAT NAMES clang-format clang-format-14)
if(NVD_CLANG_FORMAT)
    file(GLOB_RECURSE _nvd_format_sources CONFIGURE_DEPENDS
         ${PROJECT_SOURCE_DIR}/src/*.cpp ${PROJECT_SOURCE_DIR}/src/*.h
         ${PROJECT_SOURCE_DIR}/platform/*.cpp ${PROJECT_SOURCE_DIR}/platform/*.h
         ${PROJECT_SOURCE_DIR}/app/*.cpp ${PROJECT_SOURCE_DIR}/app/*.h
         ${PROJECT_SOURCE_DIR}/tests/*.cpp ${PROJECT_SOURCE_DIR}/bench/*.cpp ${PROJECT_SOURCE_DIR}/fuzz/*.cpp)
    add_custom_target(format
        COMMAND ${NVD_CLANG_FORMAT} -i ${_nvd_format_sources}
        COMMENT "clang-format over the tree"
        VERBATIM)
endif()
