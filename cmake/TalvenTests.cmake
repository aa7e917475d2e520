# SPDX-FileCopyrightText: 2026 The TalvenHR authors
# SPDX-License-Identifier: MIT

find_package(Qt5 REQUIRED COMPONENTS Test)

# Sets the clock of a process.
file(GLOB faketime_folders "/usr/lib/*/faketime" "/usr/lib/faketime")
find_library(TALVENHR_FAKETIME_LIBRARY libfaketime.so.1 PATHS ${faketime_folders} REQUIRED)

# talven_test_options(<target>): a test is built more often than it runs.
function(talven_test_options target)
    target_compile_options(${target} PRIVATE
        $<$<AND:$<CXX_COMPILER_ID:GNU>,$<CONFIG:RelWithDebInfo>>:-O1 -g1>)
endfunction()

# talven_add_test(<name> SOURCES <file>... [LIBRARIES <target>...] [LABELS <label>...]
#                 [TIME_ZONES <zone>...] [ENVIRONMENT <NAME=value>...]
#                 [FROZEN_CLOCK])
#
# An executable of Qt Test, registered with CTest. With TIME_ZONES it is registered once for each zone,
# as <name>.<zone>; otherwise it runs in the zone of Bratislava. With FROZEN_CLOCK it can set the
# machine's clock for itself (tests/support/machineclock.h).
function(talven_add_test name)
    cmake_parse_arguments(arg "FROZEN_CLOCK" "" "SOURCES;LIBRARIES;LABELS;TIME_ZONES;ENVIRONMENT" ${ARGN})
    add_executable(${name} ${arg_SOURCES})
    talven_target_defaults(${name})
    talven_test_options(${name})
    talven_reuse_headers(${name} talvenhr_testheaders)
    target_link_libraries(${name} PRIVATE talvenhr_testsupport ${arg_LIBRARIES})

    # Against what hangs: with sanitizers, on a busy machine, everything takes ten times as long.
    set(timeout 900)
    # Dates, hashes and letters come out the same everywhere.
    set(environment LC_ALL=C.UTF-8 QT_HASH_SEED=0 QTEST_FUNCTION_TIMEOUT=600000 ${arg_ENVIRONMENT})
    if(TALVENHR_SANITIZE)
        # Beside libfaketime the sanitizer is not the first library of all, and must not ask for the time while
        # it gives out memory: that library takes some to answer.
        list(APPEND environment
            ASAN_OPTIONS=verify_asan_link_order=0:allocator_release_to_os_interval_ms=-1)
    endif()
    if(arg_FROZEN_CLOCK)
        list(APPEND environment "LD_PRELOAD=${TALVENHR_FAKETIME_LIBRARY}" FAKETIME=+0
            FAKETIME_NO_CACHE=1 FAKETIME_DONT_FAKE_MONOTONIC=1)
    endif()
    if(NOT arg_TIME_ZONES)
        add_test(NAME ${name} COMMAND ${name})
        set_tests_properties(${name} PROPERTIES ENVIRONMENT "${environment};TZ=Europe/Bratislava"
            LABELS "${arg_LABELS}" TIMEOUT ${timeout})
        return()
    endif()
    foreach(zone IN LISTS arg_TIME_ZONES)
        add_test(NAME ${name}.${zone} COMMAND ${name})
        set_tests_properties(${name}.${zone} PROPERTIES ENVIRONMENT "${environment};TZ=${zone}"
            LABELS "${arg_LABELS}" TIMEOUT ${timeout})
    endforeach()
endfunction()

# talven_allow_long_runs(<test>...): a day for what docs/testing.md proposes. No option of ctest gives a test
# more time than it was registered with; what hangs is ended by Qt's limit for a function.
function(talven_allow_long_runs)
    set_tests_properties(${ARGN} PROPERTIES TIMEOUT 86400)
endfunction()

# talven_start_early(<seconds> <test>...): those that take so long begin first, side by side with the others.
function(talven_start_early seconds)
    set_tests_properties(${ARGN} PROPERTIES COST ${seconds})
endfunction()

# The zones in which everything that has to do with dates is tested: Greenwich, one east and one west
# of it. All three change their clocks by other rules.
set(TALVEN_TIME_ZONES UTC Europe/Bratislava America/New_York)
