# The warnings of the project, as a target that its own code alone links.
add_library(kva_warnings INTERFACE)
target_compile_options(kva_warnings INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)
# A subscript may be a signed number, as the numbers of populations, loci and slots are: what g++ means
# by -Wconversion.
if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    target_compile_options(kva_warnings INTERFACE -Wno-sign-conversion)
endif()
# g++ 12 warns of overlapping copies where a literal and a string are added (bug 105329 of GCC).
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    target_compile_options(kva_warnings INTERFACE -Wno-restrict)
endif()
