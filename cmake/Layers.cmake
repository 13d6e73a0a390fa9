# The folders of Quillorn/ from the ground up; folders of one line are neighbours. A folder may include the folders of
# the lines below its own (here: above), never a neighbour, with the exceptions that follow.
set(QUILLORN_LAYERS
    "Platform"
    "HTTP"
    "Store"
    "Models"
    "Records"
    "API"
    "MCP AI"
    "Services Reminders"
    "Views"
    "App"
    "CLI Desktop")
# The engines know nothing of each other or of the domain.
set(QUILLORN_ONLY_HTTP Platform)
set(QUILLORN_ONLY_Store Platform)
# What is exchanged is the same on every surface, so it knows no transport.
set(QUILLORN_ONLY_Records Platform Store Models)

# quillorn_allowed_folders(FOLDER RESULT): the folders that FOLDER may include; NOTFOUND for one without a layer.
function(quillorn_allowed_folders folder result)
    set(below "")
    foreach(layer IN LISTS QUILLORN_LAYERS)
        string(REPLACE " " ";" neighbours "${layer}")
        if("${folder}" IN_LIST neighbours)
            if(DEFINED QUILLORN_ONLY_${folder})
                set(below ${QUILLORN_ONLY_${folder}})
            endif()
            set(${result} "${below}" PARENT_SCOPE)
            return()
        endif()
        list(APPEND below ${neighbours})
    endforeach()
    set(${result} NOTFOUND PARENT_SCOPE)
endfunction()
