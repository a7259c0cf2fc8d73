# Options for developers, off for consumers; orv_developer_options(TARGET) applies them.

option(ORV_WARNINGS "Compile our own code with all warnings" OFF)
option(ORV_WERROR "Treat these warnings as errors" OFF)
option(ORV_COVERAGE "Instrument for line and branch coverage" OFF)
set(ORV_SANITIZE "" CACHE STRING "Sanitizers to build with, such as address,undefined or thread")

function(orv_developer_options target)
    if(ORV_WARNINGS)
        target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wconversion)
        if(CMAKE_CXX_COMPILER_ID MATCHES Clang) # calls of Qt's macros leave out their last argument
            target_compile_options(${target} PRIVATE -Wno-gnu-zero-variadic-macro-arguments)
        endif()
    endif()
    if(ORV_WERROR)
        target_compile_options(${target} PRIVATE -Werror)
    endif()
    if(ORV_SANITIZE)
        target_compile_options(${target} PRIVATE -fsanitize=${ORV_SANITIZE} -fno-sanitize-recover=all
            -fno-omit-frame-pointer)
        target_link_options(${target} PRIVATE -fsanitize=${ORV_SANITIZE})
    endif()
    if(ORV_COVERAGE)
        # Atomic, because some tests run several threads.
        target_compile_options(${target} PRIVATE --coverage -O0 -fprofile-update=atomic)
        target_link_options(${target} PRIVATE --coverage)
    endif()
    # Our code converts text explicitly and does not use Qt's keywords "signals" and "slots".
    target_compile_definitions(${target} PRIVATE QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII
        QT_NO_KEYWORDS)
endfunction()
