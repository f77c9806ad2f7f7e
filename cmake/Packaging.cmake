# What `cmake --install` puts in place: the two libraries and their headers, the CMake package LumenDeck and the
# pkg-config module lumen_deck. The tree can be moved as a whole. `cpack` makes Debian packages of the same tree.
include(CMakePackageConfigHelpers)

set(LUMEN_DECK_PACKAGE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/LumenDeck)

# Installed where the system's loader looks, nothing has to say where its libraries lie.
if(NOT CMAKE_INSTALL_PREFIX STREQUAL "/usr")
    set_target_properties(lumen_deck tide_pipe PROPERTIES INSTALL_RPATH "$ORIGIN")
    set_target_properties(lumen-wall PROPERTIES INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR}")
endif()

install(TARGETS lumen_deck EXPORT LumenDeckTargets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT deck NAMELINK_COMPONENT dev
        INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(TARGETS tide_pipe EXPORT LumenDeckTargets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT pipe NAMELINK_COMPONENT dev
        INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY include/lumen_deck include/tide_pipe DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT dev)
install(EXPORT LumenDeckTargets NAMESPACE LumenDeck:: DESTINATION ${LUMEN_DECK_PACKAGE_DIR} COMPONENT dev)

configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/LumenDeckConfig.cmake.in LumenDeckConfig.cmake
                              INSTALL_DESTINATION ${LUMEN_DECK_PACKAGE_DIR})
write_basic_package_version_file(LumenDeckConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/LumenDeckConfig.cmake ${CMAKE_CURRENT_BINARY_DIR}/LumenDeckConfigVersion.cmake
        DESTINATION ${LUMEN_DECK_PACKAGE_DIR} COMPONENT dev)

file(RELATIVE_PATH LUMEN_DECK_LIBDIR_TO_INCLUDEDIR ${CMAKE_INSTALL_FULL_LIBDIR} ${CMAKE_INSTALL_FULL_INCLUDEDIR})
configure_file(${CMAKE_CURRENT_LIST_DIR}/lumen_deck.pc.in lumen_deck.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/lumen_deck.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT dev)

install(TARGETS lumen-wall RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT wall)

add_subdirectory(packaging)
