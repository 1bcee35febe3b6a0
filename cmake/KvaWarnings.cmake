# The warnings of the project, as a target that its own code alone links.
add_library(kva_warnings INTERFACE)
target_compile_options(kva_warnings INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)
# g++ 12 warns of overlapping copies where a literal and a string are added (bug 105329 of GCC).
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    target_compile_options(kva_warnings INTERFACE -Wno-restrict)
endif()
