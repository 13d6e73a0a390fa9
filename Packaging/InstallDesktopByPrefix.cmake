# Installs what names the program of the window by its full path, which is known at the installation alone: the entry of
# the menus, and what starts it when it is called over D-Bus.
# Set before: CMAKE_INSTALL_PREFIX, QUILLORN_DESKTOP_FILES (the folder of the templates), QUILLORN_BINDIR (relative),
# QUILLORN_TEMPORARY (a folder).

cmake_path(ABSOLUTE_PATH CMAKE_INSTALL_PREFIX NORMALIZE OUTPUT_VARIABLE prefix)
set(plain "${prefix}/${QUILLORN_BINDIR}/quillorn-desktop")
string(REPLACE "\\" "\\\\" busProgram "${plain}")
if(prefix MATCHES "^/usr/?$")
    set(desktopProgram quillorn-desktop)
else()
    # Between quotes three signs are escaped, the backslash once more as in each value; the percent sign is a sign of
    # its own in either place.
    string(REGEX REPLACE "([\"`$])" "\\\\\\\\\\1" escaped "${plain}")
    string(REPLACE "%" "%%" escaped "${escaped}")
    set(desktopProgram "\"${escaped}\"")
endif()

function(install_made name folder)
    configure_file("${QUILLORN_DESKTOP_FILES}/${name}.in" "${QUILLORN_TEMPORARY}/${name}" @ONLY)
    file(INSTALL "${QUILLORN_TEMPORARY}/${name}" DESTINATION "${CMAKE_INSTALL_PREFIX}/share/${folder}")
endfunction()
install_made(com.quillorn.Desktop.desktop applications)
install_made(com.quillorn.Desktop.service dbus-1/services)
