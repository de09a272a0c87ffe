# The dark style sheet comes from Debian's python3-qdarkstyle package: scripts/install-deps.sh
# unpacks it into .deps/qdarkstyle (or it is found where the package is installed). Nothing of it
# is kept in this repository. Without it the program runs unstyled and says so on start-up.
find_path(QDARKSTYLE_DIR darkstyle.qss
    PATHS "${CMAKE_SOURCE_DIR}/.deps/qdarkstyle/usr/lib/python3/dist-packages/qdarkstyle/dark"
          "/usr/lib/python3/dist-packages/qdarkstyle/dark"
    NO_DEFAULT_PATH)

# Adds the style sheet as ":/qdarkstyle/style.qss" and its images under ":/qss_icons/dark/rc/"
# to the given target and defines KELVARO_HAS_QDARKSTYLE for it and for everything that links it.
# Returns silently when the package is missing.
function(kelvaro_add_qdarkstyle target)
    if(NOT QDARKSTYLE_DIR)
        message(STATUS "QDarkStyle not found: ${target} is built without the style sheet")
        return()
    endif()
    file(GLOB _images "${QDARKSTYLE_DIR}/rc/*.png")
    set_source_files_properties("${QDARKSTYLE_DIR}/darkstyle.qss"
        PROPERTIES QT_RESOURCE_ALIAS "style.qss")
    qt_add_resources(${target} "${target}_qdarkstyle_sheet"
        PREFIX "/qdarkstyle" FILES "${QDARKSTYLE_DIR}/darkstyle.qss")
    qt_add_resources(${target} "${target}_qdarkstyle_images"
        PREFIX "/qss_icons/dark" BASE "${QDARKSTYLE_DIR}" FILES ${_images})
    # Public: the program and the tests ask whether the sheet is there.
    target_compile_definitions(${target} PUBLIC KELVARO_HAS_QDARKSTYLE)
endfunction()
