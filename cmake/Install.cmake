# What `cmake --install` puts under the prefix, and the Debian package `cpack -G DEB` makes of
# it. Everything installed comes from the build tree; the programs find their images and style
# sheet as compiled-in resources, so nothing points back at the source or build tree.
include(GNUInstallDirs)
# GNUInstallDirs would take the project's name, capital letter and all; Debian wants the package's.
set(_docdir "${CMAKE_INSTALL_DATADIR}/doc/kelvaro")

# Every installed program has its manual page under docs/man/ and is named in the metainfo.
set(_programs kelvaro kelvaro-exif)
if(TARGET kelvaro-stats)
    list(APPEND _programs kelvaro-stats)
endif()
install(TARGETS ${_programs}
    RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}"
    BUNDLE DESTINATION .)
set(KELVARO_PROVIDED_BINARIES)
foreach(program IN LISTS _programs)
    string(APPEND KELVARO_PROVIDED_BINARIES "\n    <binary>${program}</binary>")
endforeach()

set(_packaging "${CMAKE_CURRENT_BINARY_DIR}/packaging")
configure_file(packaging/kelvaro.desktop.in "${_packaging}/${KELVARO_APP_ID}.desktop" @ONLY)
configure_file(packaging/kelvaro.metainfo.xml.in "${_packaging}/${KELVARO_APP_ID}.metainfo.xml"
    @ONLY)
install(FILES "${_packaging}/${KELVARO_APP_ID}.desktop"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/applications")
install(FILES "${_packaging}/${KELVARO_APP_ID}.metainfo.xml"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/metainfo")
install(DIRECTORY "${KELVARO_ICON_DIR}/" DESTINATION "${CMAKE_INSTALL_DATADIR}/icons/hicolor")

# Manual pages and the Debian changelog are installed compressed, as Debian's policy asks
# (gzip -n: no name or time stamp, so the bytes do not change between builds).
function(kelvaro_install_gzipped source name destination)
    configure_file("${source}" "${_packaging}/${name}" @ONLY)
    add_custom_command(OUTPUT "${_packaging}/${name}.gz"
        COMMAND gzip -9nkf "${_packaging}/${name}"
        DEPENDS "${_packaging}/${name}" "${source}"
        COMMENT "Compressing ${name}")
    list(APPEND KELVARO_GZIPPED "${_packaging}/${name}.gz")
    set(KELVARO_GZIPPED "${KELVARO_GZIPPED}" PARENT_SCOPE)
    install(FILES "${_packaging}/${name}.gz" DESTINATION "${destination}")
endfunction()
set(KELVARO_GZIPPED)
foreach(page IN LISTS _programs)
    kelvaro_install_gzipped(docs/man/${page}.1 ${page}.1 "${CMAKE_INSTALL_MANDIR}/man1")
endforeach()
kelvaro_install_gzipped(packaging/changelog changelog "${_docdir}")
add_custom_target(kelvaro_packaging_files ALL DEPENDS ${KELVARO_GZIPPED})
install(FILES packaging/copyright DESTINATION "${_docdir}")

set(CPACK_PACKAGE_NAME "kelvaro")
set(CPACK_PACKAGE_VENDOR "The Kelvaro developers")
set(CPACK_PACKAGE_CONTACT "The Kelvaro developers <info@${KELVARO_UPDATE_HOST}>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "statistics of the shooting data (EXIF) of photos")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
    "Kelvaro reads the shooting metadata of the photo files in the folders you\n"
    "pick (Canon CR2 and CR3, Fujifilm RAF, Nikon NEF, Sony ARW, Panasonic RW2,\n"
    "Olympus ORF, DNG and JPEG) with its own reader and shows how often each\n"
    "camera, lens, focal length, ISO value, f-number, exposure time, metering\n"
    "mode and exposure program was used, as tables beside charts.")
string(REPLACE ";" "" CPACK_DEBIAN_PACKAGE_DESCRIPTION "${CPACK_DEBIAN_PACKAGE_DESCRIPTION}")
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION "graphics")
set(CPACK_DEBIAN_PACKAGE_PRIORITY "optional")
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "https://${KELVARO_UPDATE_HOST}/")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_PACKAGING_INSTALL_PREFIX "/usr")
set(CPACK_STRIP_FILES ON)
# The SQLite driver is a plugin that the binaries load at run time, so shlibdeps cannot see it.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "libqt6sql6-sqlite")
set(CPACK_GENERATOR "DEB")
include(CPack)
