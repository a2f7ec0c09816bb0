# What every target of the project is compiled with.
add_library(marrowick-options INTERFACE)
target_compile_options(marrowick-options INTERFACE
    -Wall
    -Wextra
    -Wpedantic
    -Wconversion
    $<$<CXX_COMPILER_ID:GNU>:-Wshadow=local>
    -Wnon-virtual-dtor
    -Woverloaded-virtual
    -Wsuggest-override
    -Werror)

option(MARROWICK_SANITIZE "Compile with AddressSanitizer and UndefinedBehaviorSanitizer" OFF)
if(MARROWICK_SANITIZE)
    target_compile_options(marrowick-options INTERFACE
        -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(marrowick-options INTERFACE -fsanitize=address,undefined)
endif()

find_program(CCACHE ccache)
if(CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE})
endif()
