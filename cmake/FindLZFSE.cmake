# LZFSE::lzfse, the compression of backup files: an installed liblzfse, else a static library of the sources that the
# set-up scripts fetch into build/lzfse.

find_path(LZFSE_INCLUDE_DIR lzfse.h)
find_library(LZFSE_LIBRARY lzfse)
set(LZFSE_SOURCE_DIR "${CMAKE_SOURCE_DIR}/build/lzfse" CACHE PATH "Sources of LZFSE, for where no liblzfse is installed")
include(FindPackageHandleStandardArgs)

if(LZFSE_INCLUDE_DIR AND LZFSE_LIBRARY)
    find_package_handle_standard_args(LZFSE REQUIRED_VARS LZFSE_LIBRARY LZFSE_INCLUDE_DIR)
    if(NOT TARGET LZFSE::lzfse)
        add_library(LZFSE::lzfse UNKNOWN IMPORTED)
        set_target_properties(LZFSE::lzfse PROPERTIES
            IMPORTED_LOCATION "${LZFSE_LIBRARY}" INTERFACE_INCLUDE_DIRECTORIES "${LZFSE_INCLUDE_DIR}")
    endif()
    return()
endif()

find_file(LZFSE_SOURCE lzfse_encode.c PATHS "${LZFSE_SOURCE_DIR}" NO_DEFAULT_PATH)
find_package_handle_standard_args(LZFSE REQUIRED_VARS LZFSE_SOURCE
    REASON_FAILURE_MESSAGE "Install liblzfse, or let ./run or ./test fetch its sources")
if(NOT TARGET lzfse)
    # Neither our warnings nor our sanitizers: the code is not ours, and offsets pointers in ways that are reported.
    file(GLOB sources "${LZFSE_SOURCE_DIR}/*.c")
    add_library(lzfse STATIC ${sources})
    target_include_directories(lzfse BEFORE PRIVATE "${LZFSE_SOURCE_DIR}")
    target_include_directories(lzfse SYSTEM INTERFACE "${LZFSE_SOURCE_DIR}/include")
    # This copy calls malloc without declaring it. Unoptimised it would take a tenth of a test's time.
    target_compile_options(lzfse PRIVATE -w -include stdlib.h -O2)
    add_library(LZFSE::lzfse ALIAS lzfse)
endif()
