# CPack reads this once for each package: its name, and which of the files go where in it.
set(name "lumivane-${CPACK_PACKAGE_VERSION}")
set(program "${CPACK_LUMIVANE_BUILD};Lumivane;program;/")
if(CPACK_GENERATOR STREQUAL "ZIP")
    set(CPACK_PACKAGE_FILE_NAME "${name}-windows")
    set(CPACK_INSTALL_CMAKE_PROJECTS "${program};${CPACK_LUMIVANE_BUILD};Lumivane;data;/"
        "${CPACK_LUMIVANE_BUILD};Lumivane;console;/")
else()
    # The setup program keeps what it has brought below "defaults" and copies it to its place where no changed file is: so it
    # can tell a file that the user has changed from one that it may replace.
    set(CPACK_PACKAGE_FILE_NAME "${name}-setup")
    set(CPACK_INSTALL_CMAKE_PROJECTS "${program};${CPACK_LUMIVANE_BUILD};Lumivane;data;/defaults")
endif()
