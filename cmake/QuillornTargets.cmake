# Flags for every target of ours, and the two functions by which folders declare themselves.

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM)
    set(CMAKE_CXX_COMPILER_LAUNCHER
        ${CMAKE_COMMAND} -E env CCACHE_BASEDIR=${CMAKE_SOURCE_DIR} CCACHE_NOHASHDIR=1
        CCACHE_SLOPPINESS=pch_defines,time_macros ${CCACHE_PROGRAM})
endif()

add_library(quillorn_flags INTERFACE)
target_include_directories(quillorn_flags INTERFACE "${CMAKE_SOURCE_DIR}/Quillorn")
target_compile_options(quillorn_flags INTERFACE -Wall -Wextra -Wpedantic -Wshadow -fno-omit-frame-pointer)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    # Both report faults inside libstdc++ 12 (string concatenation, variant) that are none, when it optimises.
    target_compile_options(quillorn_flags INTERFACE -Wno-restrict -Wno-maybe-uninitialized)
endif()
if(CMAKE_UNITY_BUILD AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # The private part of a class may have members of types from its file's unnamed namespace; in a unity build g++
    # takes such a file for a header. And what a file names with `using` is not global to the others.
    target_compile_options(quillorn_flags INTERFACE -Wno-subobject-linkage -Wno-shadow)
endif()
if(QUILLORN_WERROR)
    target_compile_options(quillorn_flags INTERFACE -Werror)
endif()
if(QUILLORN_SANITIZE)
    # Without -fno-sanitize-recover undefined behaviour would only be printed, and the test pass.
    # Lines for the traces are enough; all about variables would take a third of the time.
    target_compile_options(quillorn_flags INTERFACE -fsanitize=${QUILLORN_SANITIZE} -fno-sanitize-recover=all -O1 -g1)
    target_link_options(quillorn_flags INTERFACE -fsanitize=${QUILLORN_SANITIZE})
endif()
find_program(MOLD_PROGRAM mold)
if(MOLD_PROGRAM)
    target_link_options(quillorn_flags INTERFACE -fuse-ld=mold)
endif()

# quillorn_library(NAME DEPS lower folders ... LIBS third-party targets ...)
# A folder of Quillorn/ as a static library of its .cpp files. DEPS are the folders that it may include;
# LIBS stay private, so that no header of ours can leak a third-party one.
function(quillorn_library name)
    cmake_parse_arguments(arg "" "" "DEPS;LIBS;SOURCES" ${ARGN})
    file(GLOB sources CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/*.cpp")
    add_library(Quillorn${name} STATIC ${sources} ${arg_SOURCES})
    set(deps ${arg_DEPS})
    list(TRANSFORM deps PREPEND Quillorn)
    target_link_libraries(Quillorn${name} PUBLIC quillorn_flags ${deps} PRIVATE ${arg_LIBS})
endfunction()

# quillorn_compile_apart(PATTERN ...)
# Keeps files of the calling folder out of unity builds: their unnamed namespaces have the same names in them.
function(quillorn_compile_apart)
    foreach(pattern IN LISTS ARGN)
        file(GLOB sources CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/${pattern}")
        set_source_files_properties(${sources} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
    endforeach()
endfunction()

# quillorn_test(NAME DEPS folders ... LIBS third-party targets ...)
# A folder of Tests/ as one GoogleTest binary, with the shared fakes of Tests/Support.
function(quillorn_test name)
    cmake_parse_arguments(arg "" "" "DEPS;LIBS;LABELS" ${ARGN})
    file(GLOB sources CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/*.cpp")
    add_executable(${name}Tests ${sources})
    set(deps ${arg_DEPS})
    list(TRANSFORM deps PREPEND Quillorn)
    target_link_libraries(${name}Tests PRIVATE ${deps} QuillornTestSupport ${arg_LIBS} GTest::gmock GTest::gtest_main)
    target_include_directories(${name}Tests PRIVATE "${CMAKE_SOURCE_DIR}/Tests")
    if(sources)
        target_precompile_headers(${name}Tests REUSE_FROM QuillornTestSupport)
    endif()
    add_test(NAME ${name} COMMAND ${name}Tests)
    set_tests_properties(${name} PROPERTIES TIMEOUT 300 LABELS "${arg_LABELS}")
endfunction()
