# What an installation of the window has beside its program, and its package.

add_terms(bootstrap-icons)
configure_file(copyright.in copyright-desktop @ONLY)
string(TIMESTAMP today "%Y-%m-%d" UTC)
configure_file(Desktop/com.quillorn.Desktop.metainfo.xml.in com.quillorn.Desktop.metainfo.xml @ONLY)

install(TARGETS quillorn-desktop DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT desktop)
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/com.quillorn.Desktop.metainfo.xml"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/metainfo" COMPONENT desktop)
install(FILES "${CMAKE_SOURCE_DIR}/Quillorn/Desktop/Icon/com.quillorn.Desktop.svg"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps" COMPONENT desktop)
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/copyright-desktop" RENAME copyright
    DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/quillorn-desktop" COMPONENT desktop)
install(CODE "
    set(QUILLORN_DESKTOP_FILES \"${CMAKE_CURRENT_SOURCE_DIR}/Desktop\")
    set(QUILLORN_BINDIR \"${CMAKE_INSTALL_BINDIR}\")
    set(QUILLORN_TEMPORARY \"${CMAKE_CURRENT_BINARY_DIR}\")" COMPONENT desktop)
install(SCRIPT InstallDesktopByPrefix.cmake COMPONENT desktop)

list(APPEND CPACK_COMPONENTS_ALL desktop)
set(CPACK_COMPONENT_DESKTOP_DESCRIPTION
"The window of Quillorn, which keeps track of clients, projects, tasks, notes
and time. It works on the same data as the command line and the local API.")
set(CPACK_DEBIAN_DESKTOP_PACKAGE_NAME quillorn-desktop)
set(CPACK_DEBIAN_DESKTOP_DESCRIPTION_SUMMARY "work tracker for freelancers, in a window")
# The modules that the screens import are no libraries that could be found by their use.
string(JOIN ", " CPACK_DEBIAN_DESKTOP_PACKAGE_DEPENDS "quillorn (= ${PROJECT_VERSION})" tzdata qml6-module-qtquick
    qml6-module-qtquick-window qml6-module-qtquick-controls qml6-module-qtquick-templates qml6-module-qtquick-layouts
    qml6-module-qtquick-dialogs qml6-module-qtqml qml6-module-qtqml-models qml6-module-qtqml-workerscript fonts-inter)
set(CPACK_DEBIAN_DESKTOP_PACKAGE_RECOMMENDS "qt6-wayland, fonts-noto-color-emoji")
