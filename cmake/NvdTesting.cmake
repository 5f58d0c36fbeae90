# nvd_add_test(<name> SOURCES ... LIBS ... [WRAPPER cmd...])
# A Qt Test program registered with CTest, run on the offscreen platform
# with a pinned locale and its own settings/data folders, so that results
# do not depend on the machine or on the other tests. WRAPPER runs the
# program under a command that sets up what it talks to (scripts/pcsc-rig).
function(nvd_add_test name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LIBS;WRAPPER" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE Qt5::Test ${ARG_LIBS})
    target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests/common)
    nvd_add_sanitizer_hooks(${name})
    add_test(NAME ${name} COMMAND ${ARG_WRAPPER} $<TARGET_FILE:${name}>)
    set(_home ${CMAKE_BINARY_DIR}/testhome/${name})
    # intercept_tls_get_addr=0: with Debian 12's glibc the leak checker can
    # record a dynamic TLS block with a bogus range and then crash scanning
    # it at exit (the search page test did, every time); static TLS and the
    # threads' stacks are still scanned.
    set_tests_properties(${name} PROPERTIES
        TIMEOUT 300
        ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LC_ALL=C.UTF-8;LANG=C.UTF-8;TZ=UTC;HOME=${_home};XDG_CONFIG_HOME=${_home}/config;XDG_DATA_HOME=${_home}/data;XDG_RUNTIME_DIR=${_home}/runtime;LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/lsan.supp:print_suppressions=0;ASAN_OPTIONS=detect_leaks=1:abort_on_error=1:intercept_tls_get_addr=0;UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1")
    file(MAKE_DIRECTORY ${_home}/runtime)
    file(CHMOD ${_home}/runtime DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE)
endfunction()

# nvd_add_benchmark(<name> SOURCES ... LIBS ...)
# A Google Benchmark program; bench/benchmain.cpp gives it a QApplication.
function(nvd_add_benchmark name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LIBS" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE nvd_bench_main ${ARG_LIBS})
endfunction()

# nvd_add_fuzzer(<name> SOURCES ... LIBS ...)  (clang only)
function(nvd_add_fuzzer name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LIBS" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    target_compile_options(${name} PRIVATE -fsanitize=fuzzer)
    target_link_options(${name} PRIVATE -fsanitize=fuzzer)
    target_link_libraries(${name} PRIVATE ${ARG_LIBS})
endfunction()
