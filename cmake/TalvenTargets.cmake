# SPDX-FileCopyrightText: 2026 The TalvenHR authors
# SPDX-License-Identifier: MIT

# Where a build was made must not show in what it makes: paths of the sources begin with ".", those of
# the build with "./build", archives carry no dates and owners, and moc names headers by the folders to
# search. (The later option counts: the build may lie within the sources.)
set(CMAKE_AUTOMOC_PATH_PREFIX ON)
set(talven_path_options "-ffile-prefix-map=${PROJECT_SOURCE_DIR}=."
    "-ffile-prefix-map=${PROJECT_BINARY_DIR}=./build")
if(CMAKE_CXX_FLAGS MATCHES "--coverage")
    set(talven_path_options) # the report has to find the sources
endif()
if(UNIX AND NOT APPLE)
    set(CMAKE_CXX_ARCHIVE_CREATE "<CMAKE_AR> qcD <TARGET> <LINK_FLAGS> <OBJECTS>")
    set(CMAKE_CXX_ARCHIVE_APPEND "<CMAKE_AR> qD <TARGET> <LINK_FLAGS> <OBJECTS>")
    set(CMAKE_CXX_ARCHIVE_FINISH "<CMAKE_RANLIB> -D <TARGET>")
endif()

# Programs that can be loaded anywhere, where the compiler does not make them so by itself.
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)

# talven_harden(<target>): what makes a fault hard to exploit.
function(talven_harden target)
    target_compile_options(${target} PRIVATE
        -fstack-protector-strong -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)
    target_link_options(${target} PRIVATE -Wl,-z,relro,-z,now,-z,noexecstack)
endfunction()

# talven_target_defaults(<target>): language level, definitions and warnings of every target.
function(talven_target_defaults target)
    set_target_properties(${target} PROPERTIES
        AUTOMOC ON
        CXX_STANDARD 17
        CXX_STANDARD_REQUIRED ON
        CXX_EXTENSIONS OFF
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON
        POSITION_INDEPENDENT_CODE ON)
    target_compile_definitions(${target} PRIVATE
        QT_NO_CAST_FROM_ASCII
        QT_NO_CAST_TO_ASCII
        QT_NO_FOREACH
        QT_NO_KEYWORDS
        # Messages carry no file, line or function, whatever the type of build.
        QT_NO_MESSAGELOGCONTEXT
        # Servers are built with Qt 5.9, so its API is the one in use.
        QT_DISABLE_DEPRECATED_BEFORE=0x050700
        QT_NO_DEPRECATED_WARNINGS)
    target_compile_options(${target} PRIVATE
        $<$<CXX_COMPILER_ID:MSVC>:/utf-8>
        $<$<CXX_COMPILER_ID:GNU,Clang>:-Wall -Wextra -Wpedantic -Wshadow ${talven_path_options}>
        $<$<AND:$<CXX_COMPILER_ID:GNU,Clang>,$<BOOL:${TALVENHR_WARNINGS_AS_ERRORS}>>:-Werror>)
    if(TALVENHR_HARDEN)
        talven_harden(${target})
    endif()
    if(TALVENHR_SANITIZE)
        set(sanitizers -fsanitize=address,undefined -fno-sanitize-recover=all)
        target_compile_options(${target} PRIVATE ${sanitizers} -fno-omit-frame-pointer)
        target_link_options(${target} PRIVATE ${sanitizers})
    endif()
    if(TALVENHR_SANITIZE_THREAD)
        target_compile_options(${target} PRIVATE -fsanitize=thread -fno-omit-frame-pointer)
        target_link_options(${target} PRIVATE -fsanitize=thread)
    endif()
endfunction()

# talven_add_precompiled_headers(<target> <header>...): headers for talven_reuse_headers(), with
# TALVENHR_PRECOMPILE. The builds with clang have none, so that each file names what it uses.
function(talven_add_precompiled_headers target)
    file(GENERATE OUTPUT "${target}.cpp" CONTENT "")
    add_library(${target} OBJECT EXCLUDE_FROM_ALL "${CMAKE_CURRENT_BINARY_DIR}/${target}.cpp")
    talven_target_defaults(${target})
    set_target_properties(${target} PROPERTIES AUTOMOC OFF)
    target_link_libraries(${target} PRIVATE Qt5::Core)
    if(TALVENHR_PRECOMPILE)
        target_precompile_headers(${target} PRIVATE ${ARGN} <algorithm> <functional> <optional>)
    endif()
endfunction()

# talven_reuse_headers(<target> <from>)
function(talven_reuse_headers target from)
    if(TALVENHR_PRECOMPILE)
        target_precompile_headers(${target} REUSE_FROM ${from})
    endif()
endfunction()
