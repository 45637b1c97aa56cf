# What software centres show about the program. Version and date come from the newest release in the changelog.
set(changes "${PROJECT_SOURCE_DIR}/CHANGELOG.md")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${changes}")
file(STRINGS "${changes}" releases REGEX "^## [0-9.]+ - [0-9-]+$")
string(REGEX MATCH "## ${PROJECT_VERSION} - ([0-9-]+)" release "${releases}")
if(NOT release)
  message(FATAL_ERROR "CHANGELOG.md has no release ${PROJECT_VERSION}")
endif()
set(release_date "${CMAKE_MATCH_1}")
set(metainfo "${CMAKE_CURRENT_BINARY_DIR}/example.tarnwell.zth4718_evaluation.metainfo.xml")
configure_file(zth4718-evaluation.metainfo.xml.in "${metainfo}" @ONLY)
install(FILES "${metainfo}" DESTINATION share/metainfo)

# These tests exist only if their checkers are installed; ./package installs both.
find_program(APPSTREAMCLI appstreamcli)
if(APPSTREAMCLI AND BUILD_TESTING)
  add_test(NAME packaging.metainfo-is-sound COMMAND ${APPSTREAMCLI} validate --no-net --pedantic "${metainfo}")
endif()
find_program(DESKTOP_FILE_VALIDATE desktop-file-validate)
if(DESKTOP_FILE_VALIDATE AND BUILD_TESTING)
  add_test(NAME packaging.menu-entry-is-sound
    COMMAND ${DESKTOP_FILE_VALIDATE} "${CMAKE_CURRENT_SOURCE_DIR}/zth4718-evaluation.desktop")
endif()
