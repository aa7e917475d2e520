# SPDX-FileCopyrightText: 2026 The TalvenHR authors
# SPDX-License-Identifier: MIT

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
        $<$<CXX_COMPILER_ID:GNU,Clang>:-Wall -Wextra -Wpedantic -Wshadow>
        $<$<AND:$<CXX_COMPILER_ID:GNU,Clang>,$<BOOL:${TALVENHR_WARNINGS_AS_ERRORS}>>:-Werror>)
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
