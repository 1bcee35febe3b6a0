# What cmake --install puts where: programs with their pages and completions, the library libkva with
# its header, CMake package and pkg-config file, documents, examples and licence. The programs install
# themselves where they are built (src/). tests/install/ holds the tree to a list.

foreach(program IN LISTS kva_programs)
    install(FILES man/${program}.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
    install(FILES completions/${program}.bash RENAME ${program}
        DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
    install(FILES completions/_${program} DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/site-functions)
endforeach()

# --- The library --------------------------------------------------------------------------------

include(CMakePackageConfigHelpers)
set(kva_package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/kva)

install(TARGETS ${kva_library} EXPORT kva
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(FILES include/kva/kva.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/kva)
install(EXPORT kva NAMESPACE kva:: FILE kvaTargets.cmake DESTINATION ${kva_package_folder})

configure_package_config_file(cmake/kvaConfig.cmake.in ${CMAKE_BINARY_DIR}/package/kvaConfig.cmake
    INSTALL_DESTINATION ${kva_package_folder})
write_basic_package_version_file(${CMAKE_BINARY_DIR}/package/kvaConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_BINARY_DIR}/package/kvaConfig.cmake
    ${CMAKE_BINARY_DIR}/package/kvaConfigVersion.cmake DESTINATION ${kva_package_folder})

# The prefix is told by where the file lies, so that an installed tree can be moved.
file(RELATIVE_PATH kva_pc_to_prefix /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
configure_file(cmake/kva.pc.in ${CMAKE_BINARY_DIR}/package/kva.pc @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/package/kva.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

# --- Documents and examples ------------------------------------------------------------------------

install(FILES README.md CHANGELOG.md DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(FILES LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR} OPTIONAL)
install(DIRECTORY docs DESTINATION ${CMAKE_INSTALL_DOCDIR} FILES_MATCHING PATTERN *.md PATTERN *.png PATTERN *.svg)
install(DIRECTORY examples DESTINATION ${CMAKE_INSTALL_DOCDIR}
    FILES_MATCHING PATTERN *.md PATTERN *.txt PATTERN *.dat PATTERN *.cpp)
