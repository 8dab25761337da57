# Configures a project that has this one in it and chooses no build type: all is optimised all the same.
# cmake -DSOURCE=... -DFOLDER=... -P no_build_type.cmake
file(REMOVE_RECURSE ${FOLDER})
execute_process(COMMAND ${CMAKE_COMMAND} -G Ninja -S ${CMAKE_CURRENT_LIST_DIR}/parent -B ${FOLDER}
        -DOMBRIX_SOURCE_DIR=${SOURCE}
    OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
file(STRINGS ${FOLDER}/compile_commands.json commands REGEX "\"command\":")
list(LENGTH commands count)
list(FILTER commands EXCLUDE REGEX " -O[23] ")
if(commands OR count LESS 50)
    message(FATAL_ERROR "of ${count} sources these are not optimised: ${commands}")
endif()
