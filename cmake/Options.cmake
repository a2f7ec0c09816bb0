# What every target of the project is compiled with. Where GCC 12 optimises it sees overlapping copies in sound joins of
# strings (https://gcc.gnu.org/bugzilla/show_bug.cgi?id=105651) and unset strings in records that are being made.
add_library(marrowick-options INTERFACE)
target_compile_options(marrowick-options INTERFACE
    -Wall
    -Wextra
    -Wpedantic
    -Wconversion
    $<$<CXX_COMPILER_ID:GNU>:-Wshadow=local>
    -Wnon-virtual-dtor
    $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>
    $<$<AND:$<CXX_COMPILER_ID:GNU>,$<CONFIG:Release>>:-Wno-maybe-uninitialized>
    -Woverloaded-virtual
    -Wsuggest-override
    -Werror)

option(MARROWICK_SANITIZE "Compile with AddressSanitizer and UndefinedBehaviorSanitizer" OFF)
if(MARROWICK_SANITIZE)
    target_compile_options(marrowick-options INTERFACE
        -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(marrowick-options INTERFACE -fsanitize=address,undefined)
endif()

option(MARROWICK_FUZZ "Let the fuzzing targets look for inputs; needs clang" OFF)
if(MARROWICK_FUZZ)
    # Optimised a little: the fuzzer lives on the number of inputs that it gets through.
    target_compile_options(marrowick-options INTERFACE -fsanitize=fuzzer-no-link -O1)
endif()

find_program(CCACHE ccache)
if(CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE})
endif()

# clang-tidy takes the nearest configuration above a file: what the build generates is nobody's to mend. It wants one
# check at least.
file(WRITE ${CMAKE_BINARY_DIR}/.clang-tidy "Checks: '-*,llvm-twine-local'\nInheritParentConfig: false\n")
