# Developer targets: `lupdate` refreshes the translation source from every
# tr() text, `format` runs clang-format over the tree. Neither is part of
# the default build.

find_program(NVD_LUPDATE NAMES lupdate-qt5 lupdate PATHS /usr/lib/qt5/bin)
if(NVD_LUPDATE)
    add_custom_target(lupdate
        COMMAND ${NVD_LUPDATE} -recursive -no-obsolete -locations relative
                -source-language ru_RU -target-language en_US
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

# Builds the given .ts files into .qm files with lrelease and embeds them in
# target under :/translations/, so that the client finds its translations
# wherever it was copied to. The .ts files stay the only thing kept in git.
function(nvd_embed_translations target)
    find_package(Qt5 5.15 REQUIRED COMPONENTS LinguistTools)
    qt5_add_translation(_nvd_qm_files ${ARGN})
    set(_nvd_qrc_text "<RCC>\n  <qresource prefix=\"/translations\">\n")
    foreach(_nvd_qm IN LISTS _nvd_qm_files)
        get_filename_component(_nvd_qm_name ${_nvd_qm} NAME)
        string(APPEND _nvd_qrc_text "    <file alias=\"${_nvd_qm_name}\">${_nvd_qm}</file>\n")
    endforeach()
    string(APPEND _nvd_qrc_text "  </qresource>\n</RCC>\n")
    set(_nvd_qrc ${CMAKE_CURRENT_BINARY_DIR}/${target}_translations.qrc)
    file(WRITE ${_nvd_qrc}.in "${_nvd_qrc_text}")
    configure_file(${_nvd_qrc}.in ${_nvd_qrc} COPYONLY)
    # qt5_add_resources, unlike AUTORCC, makes rcc wait for lrelease.
    set_source_files_properties(${_nvd_qrc} PROPERTIES SKIP_AUTORCC ON)
    qt5_add_resources(_nvd_rcc_sources ${_nvd_qrc})
    target_sources(${target} PRIVATE ${_nvd_rcc_sources})
endfunction()
