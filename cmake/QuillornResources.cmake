# The files that the program serves: those of Quillorn/Resources and the viewer of /docs, which the set-up scripts
# fetch into build/viewer (without it /docs/scalar.js is "not found"). They stand in Resources/ beside the program, and
# in share/quillorn once installed.

include(GNUInstallDirs)

file(GLOB resources CONFIGURE_DEPENDS
    "${CMAKE_SOURCE_DIR}/Quillorn/Resources/*" "${CMAKE_SOURCE_DIR}/build/viewer/*.js")
set(copies "")
foreach(resource IN LISTS resources)
    cmake_path(GET resource FILENAME name)
    set(copy "${CMAKE_BINARY_DIR}/Resources/${name}")
    add_custom_command(OUTPUT "${copy}" DEPENDS "${resource}"
        COMMAND ${CMAKE_COMMAND} -E copy "${resource}" "${copy}" COMMENT "Copying ${name}")
    list(APPEND copies "${copy}")
endforeach()
add_custom_target(QuillornResources ALL DEPENDS ${copies})
install(FILES ${resources} DESTINATION "${CMAKE_INSTALL_DATADIR}/quillorn")
