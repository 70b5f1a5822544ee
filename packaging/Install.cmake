# Installation as a desktop program, the Debian package, and the checks of both.
# Included from the top-level CMakeLists.txt after the program and its tests are defined.
include(GNUInstallDirs)

set(STEWARD_DESKTOP_ID io.github.arena_steward.ArenaSteward)
set(STEWARD_SOURCE_ROOT ${CMAKE_CURRENT_LIST_DIR}/..)
set(STEWARD_GUIDE_DIR ${CMAKE_INSTALL_DATADIR}/doc/arena-steward/guide)

install(TARGETS arena-steward arena-stewardctl RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(FILES ${CMAKE_CURRENT_LIST_DIR}/arena-stewardctl.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES ${CMAKE_CURRENT_LIST_DIR}/${STEWARD_DESKTOP_ID}.desktop
        DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${CMAKE_CURRENT_LIST_DIR}/${STEWARD_DESKTOP_ID}.metainfo.xml
        DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
install(FILES ${STEWARD_SOURCE_ROOT}/resources/icons/${STEWARD_DESKTOP_ID}.svg
        DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
foreach(size 48x48 128x128 256x256)
    install(FILES ${STEWARD_SOURCE_ROOT}/resources/icons/${size}/${STEWARD_DESKTOP_ID}.png
            DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/${size}/apps)
endforeach()
install(FILES ${STEWARD_SOURCE_ROOT}/docs/guide/arena-steward-guide.html DESTINATION ${STEWARD_GUIDE_DIR})
install(DIRECTORY ${STEWARD_SOURCE_ROOT}/docs/guide/images DESTINATION ${STEWARD_GUIDE_DIR})

# The Debian package: the libraries come from dpkg-shlibdeps, the plugins Qt loads at run
# time and the opener of links and the guide are named here. The package has no Homepage
# field until the product has a site (README, "Addresses").
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME arena-steward)
set(CPACK_PACKAGE_VENDOR "Arena Steward")
set(CPACK_PACKAGE_CONTACT "Arena Steward <arena.steward@example.org>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "set up and start a Jedi Knight II: Jedi Outcast dedicated server")
set(CPACK_PACKAGE_DESCRIPTION
    "Arena Steward holds every setting of a Jedi Knight II: Jedi Outcast dedicated\n"
    "server in one tabbed window. It scans the game's pk3 archives for maps, keeps a\n"
    "map rotation, writes the server's console scripts into the game's base folder\n"
    "and starts the server with a matching command line. The game is not included.")
string(REPLACE ";" "" CPACK_PACKAGE_DESCRIPTION "${CPACK_PACKAGE_DESCRIPTION}")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION games)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "qt6-qpa-plugins, qt6-image-formats-plugins, xdg-utils")
include(CPack)

if(STEWARD_BUILD_TESTS)
    function(steward_tool_test name tool package)
        find_program(STEWARD_${name}_TOOL ${tool})
        if(STEWARD_${name}_TOOL)
            add_test(NAME ${name} COMMAND ${STEWARD_${name}_TOOL} ${ARGN})
        else()
            add_test(NAME ${name} COMMAND sh -c "echo '${tool} is missing: scripts/install-deps.sh installs ${package}'; exit 1")
        endif()
    endfunction()
    steward_tool_test(desktop_entry_validates desktop-file-validate desktop-file-utils
        ${CMAKE_CURRENT_LIST_DIR}/${STEWARD_DESKTOP_ID}.desktop)
    steward_tool_test(metainfo_validates appstreamcli appstream
        validate --no-net ${CMAKE_CURRENT_LIST_DIR}/${STEWARD_DESKTOP_ID}.metainfo.xml)
    add_test(NAME package_contents
        COMMAND ${CMAKE_CURRENT_LIST_DIR}/check-package.sh ${CMAKE_BINARY_DIR} ${STEWARD_SOURCE_ROOT})
    set_tests_properties(package_contents PROPERTIES TIMEOUT 240)
endif()
