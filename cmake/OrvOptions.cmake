# What developers switch on and consumers leave off. Each is applied by orv_developer_options(TARGET).

option(ORV_WARNINGS "Compile our own code with all warnings" OFF)
option(ORV_WERROR "Treat these warnings as errors" OFF)
option(ORV_COVERAGE "Instrument for line and branch coverage" OFF)
set(ORV_SANITIZE "" CACHE STRING "Sanitizers to build with, such as address,undefined or thread")

function(orv_developer_options target)
    set(compileOptions)
    set(linkOptions)
    if(ORV_WARNINGS)
        list(APPEND compileOptions -Wall -Wextra -Wpedantic -Wconversion)
    endif()
    if(ORV_WERROR)
        list(APPEND compileOptions -Werror)
    endif()
    if(ORV_SANITIZE)
        list(APPEND compileOptions -fsanitize=${ORV_SANITIZE} -fno-sanitize-recover=all
            -fno-omit-frame-pointer)
        list(APPEND linkOptions -fsanitize=${ORV_SANITIZE})
    endif()
    if(ORV_COVERAGE)
        # Atomic, as some tests run in several threads.
        list(APPEND compileOptions --coverage -O0 -fprofile-update=atomic)
        list(APPEND linkOptions --coverage)
    endif()
    target_compile_options(${target} PRIVATE ${compileOptions})
    target_link_options(${target} PRIVATE ${linkOptions})
    # Our code spells its conversions, and leaves the words "signals" and "slots" to others.
    target_compile_definitions(${target} PRIVATE QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII
        QT_NO_KEYWORDS)
endfunction()
