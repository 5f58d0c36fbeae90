# nvd_add_sanitizer_hooks(<target> [REAL_DISPLAY])
# In an AddressSanitizer build, compiles tests/lsan.supp into the program
# as its default LeakSanitizer suppressions. The list names libraries of
# the system (D-Bus, Mesa, fontconfig...) that keep allocations until exit
# on purpose; a leak of ours still fails the run. REAL_DISPLAY is for a
# program shown on X: it unwinds allocation stacks fully, so that leaks of
# the GL drivers can be told by their library.
set(_nvd_lsan_list ${PROJECT_SOURCE_DIR}/tests/lsan.supp)
set(_nvd_lsan_source ${CMAKE_BINARY_DIR}/nvd_lsan_suppressions.cpp)

if("address" IN_LIST NVD_SANITIZE)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${_nvd_lsan_list})
    file(STRINGS ${_nvd_lsan_list} _nvd_lsan_lines REGEX "^[^#]")
    set(NVD_LSAN_SUPPRESSIONS "")
    foreach(_line IN LISTS _nvd_lsan_lines)
        string(STRIP "${_line}" _line)
        if(_line)
            string(APPEND NVD_LSAN_SUPPRESSIONS "\n           \"${_line}\\n\"")
        endif()
    endforeach()
    if(NOT NVD_LSAN_SUPPRESSIONS)
        set(NVD_LSAN_SUPPRESSIONS "\"\"")
    endif()
    configure_file(${PROJECT_SOURCE_DIR}/cmake/lsansuppressions.cpp.in ${_nvd_lsan_source} @ONLY)
endif()

function(nvd_add_sanitizer_hooks target)
    cmake_parse_arguments(ARG "REAL_DISPLAY" "" "" ${ARGN})
    if("address" IN_LIST NVD_SANITIZE)
        target_sources(${target} PRIVATE ${_nvd_lsan_source})
        if(ARG_REAL_DISPLAY)
            target_compile_definitions(${target} PRIVATE NVD_FULL_UNWIND)
        endif()
        # The runtime finds the hook through the dynamic symbol table.
        set_target_properties(${target} PROPERTIES ENABLE_EXPORTS ON)
    endif()
endfunction()
