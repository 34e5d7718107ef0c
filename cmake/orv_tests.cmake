# GoogleTest comes as sources and is built for the target. A test program is one executable of a room's
# tests, run under Wine by scripts/wine-run.sh with a time limit.
set(ORV_GOOGLETEST_SOURCE /usr/src/googletest CACHE PATH "The sources of GoogleTest")
if(NOT EXISTS ${ORV_GOOGLETEST_SOURCE}/CMakeLists.txt)
    message(FATAL_ERROR "GoogleTest's sources are missing: run scripts/bootstrap.sh")
endif()
set(BUILD_GMOCK ON CACHE BOOL "" FORCE)
set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
set(gtest_disable_pthreads ON CACHE BOOL "" FORCE)
add_subdirectory(${ORV_GOOGLETEST_SOURCE} ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)
if(MINGW)
    foreach(library gtest gtest_main gmock)
        target_include_directories(${library} BEFORE PUBLIC ${CMAKE_CURRENT_LIST_DIR}/googletest)
    endforeach()
endif()

# A clean build is mostly tests. So what nearly every test includes is compiled once for all programs, and the tests
# themselves are not optimised, as what they test is: that makes three times as many a minute. The lint preset does
# without the first, so that a file which forgets an include of its own is found there.
if(MINGW AND ORV_PRECOMPILED_TEST_HEADERS)
    add_library(test_headers STATIC ${CMAKE_CURRENT_LIST_DIR}/test_headers.cpp)
    target_link_libraries(test_headers PRIVATE orv_compile gtest gmock)
    target_compile_options(test_headers PRIVATE -O0)
    target_precompile_headers(
        test_headers PRIVATE <windows.h> <shlobj.h> <wrl/client.h> <gmock/gmock.h> <gtest/gtest.h> <algorithm> <array>
                             <functional> <memory> <optional> <string> <string_view> <utility> <vector>)
endif()

# What another compiler than mingw's builds and runs, on Windows itself: what the kit for Windows has, but for what needs
# a signature, and the module's registration.
file(STRINGS ${CMAKE_SOURCE_DIR}/installer/kit/tests.txt ORV_TESTS_ELSEWHERE)
list(FILTER ORV_TESTS_ELSEWHERE EXCLUDE REGEX trusted)
list(APPEND ORV_TESTS_ELSEWHERE module_registration_tests)

# orv_test_program(NAME SOURCES... LINK libs... [TIMEOUT seconds] [DRIVER] [DISPLAY] [LONG])
#   DRIVER   meets the real device, if only by asking whether it is there: such programs never run side by side, or
#            one's requests would reach the other's service
#   DISPLAY  opens windows: such programs never run side by side either, as there is one foreground window
#   LONG     takes minutes: not in a plain ./test.sh
function(orv_test_program name)
    cmake_parse_arguments(ARG "DRIVER;DISPLAY;LONG" "TIMEOUT" "SOURCES;LINK" ${ARGN})
    if(NOT ARG_TIMEOUT)
        set(ARG_TIMEOUT 60)
    endif()
    add_executable(${name} ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE ${ARG_LINK} orv_compile orv_image gtest_main gmock)
    if(TARGET test_headers)
        target_precompile_headers(${name} REUSE_FROM test_headers)
        target_compile_options(${name} PRIVATE -O0)
    endif()
    if(NOT MINGW)
        if(name IN_LIST ORV_TESTS_ELSEWHERE)
            add_test(NAME ${name} COMMAND ${name})
            set_tests_properties(${name} PROPERTIES TIMEOUT ${ARG_TIMEOUT})
        else()
            set_target_properties(${name} PROPERTIES EXCLUDE_FROM_ALL ON EXCLUDE_FROM_DEFAULT_BUILD ON)
        endif()
        return()
    endif()
    set(options --timeout ${ARG_TIMEOUT})
    if(ARG_DISPLAY)
        list(APPEND options --display)
    endif()
    if(ARG_DRIVER)
        list(APPEND options --driver)
    endif()
    add_test(NAME ${name} COMMAND ${CMAKE_SOURCE_DIR}/scripts/wine-run.sh ${options} --
                                  $<TARGET_FILE:${name}>)
    math(EXPR ctest_limit_s "${ARG_TIMEOUT} + 30")
    set_tests_properties(${name} PROPERTIES TIMEOUT ${ctest_limit_s})
    if(ARG_LONG)
        set_property(TEST ${name} PROPERTY LABELS long)
    endif()
    set(locks)
    if(ARG_DRIVER)
        list(APPEND locks orvdrv)
    endif()
    if(ARG_DISPLAY)
        list(APPEND locks display)
    endif()
    set_property(TEST ${name} PROPERTY RESOURCE_LOCK ${locks})
endfunction()
