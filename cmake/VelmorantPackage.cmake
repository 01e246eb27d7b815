# Installation as a system-wide program and the Debian package.
set(VELMORANT_INSTALLED_FOLDER "/usr/lib/velmorant-dvr-tools")
set(folder "lib/velmorant-dvr-tools")

install(TARGETS velmorant_desktop velmorant_setup DESTINATION ${folder})
install(TARGETS Parse DESTINATION ${folder}/movsupport)
install(TARGETS dvr-track DESTINATION bin)
install(DIRECTORY ${VELMORANT_PROGRAM_FOLDER}/skin ${VELMORANT_PROGRAM_FOLDER}/system
                  ${VELMORANT_PROGRAM_FOLDER}/map DESTINATION ${folder})

configure_file(packaging/velmorant-dvr-tools.in packaging/velmorant-dvr-tools @ONLY)
install(PROGRAMS "${CMAKE_BINARY_DIR}/packaging/velmorant-dvr-tools" DESTINATION bin)
install(FILES packaging/velmorant-dvr-tools.desktop DESTINATION share/applications)
install(DIRECTORY resources/icons/hicolor DESTINATION share/icons)

# Debian wants its pages compressed, without a time stamp so that a build can be repeated.
find_program(GZIP_PROGRAM gzip REQUIRED)
file(GLOB manuals "${CMAKE_SOURCE_DIR}/packaging/man/*.1")
set(compressed "")
foreach(source ${manuals} "${CMAKE_SOURCE_DIR}/packaging/debian/changelog")
    get_filename_component(name "${source}" NAME)
    set(target "${CMAKE_BINARY_DIR}/packaging/${name}.gz")
    add_custom_command(OUTPUT "${target}" DEPENDS "${source}"
        COMMAND ${GZIP_PROGRAM} -9nc "${source}" > "${target}" VERBATIM)
    list(APPEND compressed "${target}")
    if(name STREQUAL "changelog")
        install(FILES "${target}" DESTINATION share/doc/velmorant-dvr-tools)
    else()
        install(FILES "${target}" DESTINATION share/man/man1)
    endif()
endforeach()
add_custom_target(velmorant_manuals ALL DEPENDS ${compressed})
install(FILES packaging/debian/copyright DESTINATION share/doc/velmorant-dvr-tools)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME velmorant-dvr-tools)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT "Velmorant DVR Tools developers <maintainers@velmorant.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "player for the recordings of a car video recorder")
set(CPACK_PACKAGE_DESCRIPTION
    "Plays the recordings of a car video recorder while a car moves along
their routes on a map, with the speed and the acceleration of every second
in a chart. Also reads the tracks out of the recordings for other programs.")
set(CPACK_PACKAGING_INSTALL_PREFIX "/usr")
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION video)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS
    "libqt6webengine6-data, libqt6webenginecore6-bin, libqt6svg6, qt6-qpa-plugins, qt6-translations-l10n, fonts-dejavu-core, fonts-wqy-microhei")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "ca-certificates, libgl1-mesa-dri, xdg-utils")
include(CPack)
