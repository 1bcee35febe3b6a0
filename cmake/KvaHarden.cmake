# Release builds are hardened: stack protector, checked calls of the C library, a program whose place
# in memory the system picks at each start (src/CMakeLists.txt), and tables of the linker that are
# read-only before main begins. tests/hardening_test.py reads all of it from the built program.
# Sanitizers check more than the calls, and clash with them; without optimisation there are none.
if(NOT KVA_SANITIZE)
    include(CheckPIESupported)
    check_pie_supported(LANGUAGES CXX)
    set(kva_hardened "$<CONFIG:Release>")
    add_compile_options(
        "$<${kva_hardened}:-fstack-protector-strong;-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2>")
    add_link_options("$<${kva_hardened}:LINKER:-z,relro,-z,now>")
endif()
