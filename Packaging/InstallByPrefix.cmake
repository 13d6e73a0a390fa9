# Installs what depends on the prefix, which is chosen at the installation alone: the systemd unit names the program by
# its full path, and both it and zsh's completion are looked for in other folders below /usr than elsewhere.
# Set before: CMAKE_INSTALL_PREFIX, QUILLORN_UNIT and QUILLORN_BUS_SERVICE (the templates), QUILLORN_ZSH_COMPLETION, QUILLORN_BINDIR,
# QUILLORN_DOCDIR (both relative), QUILLORN_TEMPORARY (a folder).

cmake_path(ABSOLUTE_PATH CMAKE_INSTALL_PREFIX NORMALIZE OUTPUT_VARIABLE prefix)
# Two signs mean something to systemd, even between quotes.
string(REPLACE "%" "%%" escaped "${prefix}")
string(REPLACE "$" "$$" program "${escaped}/${QUILLORN_BINDIR}/quillorn")
string(REPLACE " " "%20" documentation "${prefix}/${QUILLORN_DOCDIR}")
string(REPLACE "%" "%%" documentation "${documentation}")

if(prefix MATCHES "^/usr(/local)?/?$")
    set(units lib/systemd/user)
else()
    # ~/.local among them
    set(units share/systemd/user)
endif()
if(prefix MATCHES "^/usr/?$")
    set(functions share/zsh/vendor-completions)
else()
    set(functions share/zsh/site-functions)
endif()

configure_file("${QUILLORN_UNIT}" "${QUILLORN_TEMPORARY}/quillorn.service" @ONLY)
file(INSTALL "${QUILLORN_TEMPORARY}/quillorn.service" DESTINATION "${CMAKE_INSTALL_PREFIX}/${units}")
# Between quotes the bus knows one sign of its own.
string(REPLACE "\\" "\\\\" busProgram "${prefix}/${QUILLORN_BINDIR}/quillorn")
configure_file("${QUILLORN_BUS_SERVICE}" "${QUILLORN_TEMPORARY}/com.quillorn.Quillorn.service" @ONLY)
file(INSTALL "${QUILLORN_TEMPORARY}/com.quillorn.Quillorn.service"
    DESTINATION "${CMAKE_INSTALL_PREFIX}/share/dbus-1/services")
file(INSTALL "${QUILLORN_ZSH_COMPLETION}" DESTINATION "${CMAKE_INSTALL_PREFIX}/${functions}")
