# The Debian package (make package): brantok, brantok-nc and brantok-emulator with the help
# pages, the sample programs, a desktop entry, an icon and manual pages.
#
#   /usr/lib/brantok/brantok            the program, in its own folder, because the file
#                                       dialog looks for the samples beside the program
#   /usr/lib/brantok/Brantok Allsorts/Sample Brantok files -> /usr/share/brantok/samples
#   /usr/bin/brantok                    -> ../lib/brantok/brantok
#   /usr/bin/brantok-nc, brantok-emulator
#   /usr/share/doc/brantok/help/        the help pages (also built into the program)
#   /usr/share/man/man1/*.1.gz, applications/brantok.desktop, icons/hicolor/scalable/apps/brantok.svg
set(BRANTOK_PKG_DIR ${CMAKE_BINARY_DIR}/package-files)
file(MAKE_DIRECTORY ${BRANTOK_PKG_DIR}/bin ${BRANTOK_PKG_DIR}/allsorts)
file(CREATE_LINK ../lib/brantok/brantok ${BRANTOK_PKG_DIR}/bin/brantok SYMBOLIC)
file(CREATE_LINK ../../../share/brantok/samples "${BRANTOK_PKG_DIR}/allsorts/Sample Brantok files" SYMBOLIC)

# Manual pages and the changelog go compressed, without a time stamp in the gzip header.
set(BRANTOK_GZ_FILES)
foreach(src docs/man/brantok.1 docs/man/brantok-nc.1 docs/man/brantok-emulator.1 packaging/changelog)
    get_filename_component(name ${src} NAME)
    add_custom_command(OUTPUT ${BRANTOK_PKG_DIR}/${name}.gz
                       COMMAND gzip -9n -c ${CMAKE_SOURCE_DIR}/${src} > ${BRANTOK_PKG_DIR}/${name}.gz
                       DEPENDS ${CMAKE_SOURCE_DIR}/${src} VERBATIM)
    list(APPEND BRANTOK_GZ_FILES ${BRANTOK_PKG_DIR}/${name}.gz)
endforeach()
add_custom_target(brantok_package_files ALL DEPENDS ${BRANTOK_GZ_FILES})

install(TARGETS brantok RUNTIME DESTINATION lib/brantok)
install(TARGETS brantok-nc brantok-emulator RUNTIME DESTINATION bin)
install(FILES ${BRANTOK_PKG_DIR}/bin/brantok DESTINATION bin)
install(FILES "${BRANTOK_PKG_DIR}/allsorts/Sample Brantok files" DESTINATION "lib/brantok/Brantok Allsorts")
install(DIRECTORY ${CMAKE_SOURCE_DIR}/samples/ DESTINATION share/brantok/samples)
install(DIRECTORY ${CMAKE_SOURCE_DIR}/src/app/help/ DESTINATION share/doc/brantok/help)
install(FILES ${BRANTOK_PKG_DIR}/brantok.1.gz ${BRANTOK_PKG_DIR}/brantok-nc.1.gz ${BRANTOK_PKG_DIR}/brantok-emulator.1.gz
        DESTINATION share/man/man1)
install(FILES ${BRANTOK_PKG_DIR}/changelog.gz ${CMAKE_SOURCE_DIR}/packaging/copyright DESTINATION share/doc/brantok)
install(FILES ${CMAKE_SOURCE_DIR}/packaging/brantok.desktop DESTINATION share/applications)
install(FILES ${CMAKE_SOURCE_DIR}/packaging/brantok.svg DESTINATION share/icons/hicolor/scalable/apps)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME brantok)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGE_CONTACT "The Brantok developers <brantok@brantok.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "PC control of a step-motor milling machine")
# The synopsis is the summary above; CPack indents these lines and turns the empty one into " .".
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION "Brantok checks an NC program (a subset of G-code) against the tool table
and the machine's limits, compiles it into motor steps, leads the operator
through the set-up of the billet, the origins and the tool offsets, and plays
the steps to the Brantok controller over a serial line. Without the controller
everything but the movement of the machine can be rehearsed offline.

Also in the package: brantok-nc, which checks, compiles and dumps NC programs
on the command line, and brantok-emulator, the controller emulated on a
pseudo-terminal.")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION electronics)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
# The libraries' package names come from dpkg-shlibdeps (libqt6core6, libqt6widgets6,
# libqt6serialport6, ...); the platform plugin that shows the windows is loaded at run time,
# so it is named here.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "qt6-qpa-plugins")
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS OFF)
include(CPack)
