# The warnings of the project, as a target that its own code alone links.
add_library(kva_warnings INTERFACE)
target_compile_options(kva_warnings INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)
