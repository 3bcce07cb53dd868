# CPack runs this when the files of a package lie together and before it packs them.
cmake_policy(VERSION 3.25)
set(stage "${CPACK_TEMPORARY_DIRECTORY}")
file(GLOB_RECURSE files LIST_DIRECTORIES false RELATIVE "${stage}" "${stage}/*")
list(SORT files)

# The setup program's list of what it brings: files, then folders with a backslash at the end, the inner ones first. The program folder
# is full of files that are the user's, so an upgrade and the uninstaller remove what this list names and nothing else.
if(CPACK_GENERATOR STREQUAL "NSIS")
    set(folders)
    foreach(file IN LISTS files)
        if(NOT file MATCHES "^[!-~ ]+$")
            message(FATAL_ERROR "${file}: the setup program reads its list as ASCII")
        endif()
        foreach(place IN ITEMS "${file}" "/${file}") # the second is where a file below "defaults" is copied to
            string(REGEX REPLACE "^/(defaults/)?" "" place "${place}")
            cmake_path(GET place PARENT_PATH folder)
            while(NOT folder STREQUAL "")
                list(APPEND folders "${folder}/")
                cmake_path(GET folder PARENT_PATH folder)
            endwhile()
        endforeach()
    endforeach()
    list(REMOVE_DUPLICATES folders)
    list(SORT folders ORDER DESCENDING)
    list(JOIN files "\r\n" text)
    list(JOIN folders "\r\n" folder_text)
    string(REPLACE "/" "\\" text "${text}\r\n${folder_text}\r\n")
    file(WRITE "${stage}/files.lst" "${text}")
endif()

# The same sources give the same packages, byte for byte.
if(DEFINED ENV{SOURCE_DATE_EPOCH})
    execute_process(COMMAND find "${stage}" -exec touch -d "@$ENV{SOURCE_DATE_EPOCH}" {} +
                    COMMAND_ERROR_IS_FATAL ANY)
endif()
