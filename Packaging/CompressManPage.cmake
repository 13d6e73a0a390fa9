# Debian wants man pages compressed, and the same bytes each time. CPack runs this on what it is about to pack.

execute_process(COMMAND gzip -9 -n "${CPACK_TEMPORARY_INSTALL_DIRECTORY}/program/usr/share/man/man1/quillorn.1"
    COMMAND_ERROR_IS_FATAL ANY)
