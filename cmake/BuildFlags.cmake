# Compiler settings of every target, in one place.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

option(ORVANTA_BENCHMARKS "Build the benchmarks" OFF)
option(ORVANTA_COMPARE "Build the comparison with other people's processors" OFF)
option(ORVANTA_FUZZERS "Build the fuzz targets (clang)" OFF)
option(ORVANTA_COVERAGE "Count which lines are run (clang)" OFF)
set(ORVANTA_SANITIZERS "" CACHE STRING "Value for -fsanitize=, empty for none")

find_program(CCACHE ccache)
if(CCACHE)
    # Precompiled headers are compared by what they are made of.
    set(CMAKE_CXX_COMPILER_LAUNCHER
        ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros ${CCACHE})
    set(CMAKE_C_COMPILER_LAUNCHER ${CCACHE})
endif()

if(CMAKE_CXX_COMPILER_ID STREQUAL Clang)
    # And must not differ by when they were made.
    string(APPEND CMAKE_CXX_FLAGS " -Xclang -fno-pch-timestamp")
endif()

add_library(orvanta_build_flags INTERFACE)
target_compile_options(orvanta_build_flags INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wnon-virtual-dtor
    -Wold-style-cast -Woverloaded-virtual -Wcast-qual -Wdouble-promotion -Wnull-dereference
    -Werror
    # The audible result must not depend on the instruction set, so no fused multiply-add.
    -ffp-contract=off)
if(CMAKE_CXX_COMPILER_ID STREQUAL GNU AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    # At -O3 it warns falsely of overlapping copies within the library's own strings.
    target_compile_options(orvanta_build_flags INTERFACE -Wno-restrict)
endif()
if(ORVANTA_SANITIZERS)
    add_compile_options(-fsanitize=${ORVANTA_SANITIZERS} -fno-omit-frame-pointer
                        -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${ORVANTA_SANITIZERS})
    # GCC 12 warns falsely of null once the sanitizers' own checks are in the code.
    target_compile_options(orvanta_build_flags INTERFACE -Wno-null-dereference)
endif()
if(ORVANTA_FUZZERS)
    # The fuzzer follows the code under test, not only its own target.
    add_compile_options(-fsanitize=fuzzer-no-link)
endif()
if(ORVANTA_COVERAGE)
    add_compile_options(-fprofile-instr-generate -fcoverage-mapping)
    add_link_options(-fprofile-instr-generate)
endif()
