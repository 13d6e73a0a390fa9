# Embeds the symbols that a list names into a target, by the names that the screens use (:/symbols/NAME).
find_path(BOOTSTRAP_ICONS check-lg.svg PATHS /usr/share/bootstrap-icons/svg NO_DEFAULT_PATH
    DOC "Folder with the icons of bootstrap-icons" REQUIRED)

function(quillorn_symbols target list)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${list}")
    file(STRINGS "${list}" lines REGEX "^[^#]")
    set(files "")
    foreach(line IN LISTS lines)
        string(REPLACE " " ";" words "${line}")
        list(GET words 0 symbol)
        list(GET words 1 icon)
        # A file has one alias, and some icons stand for two symbols.
        set(copy "${CMAKE_CURRENT_BINARY_DIR}/symbols/${symbol}")
        configure_file("${BOOTSTRAP_ICONS}/${icon}.svg" "${copy}" COPYONLY)
        list(APPEND files "${copy}")
    endforeach()
    qt_add_resources(${target} symbols PREFIX /symbols BASE "${CMAKE_CURRENT_BINARY_DIR}/symbols" FILES ${files})
endfunction()
