# Copies an example and its libraries to a folder of their own: there they find each other.
# cmake -DPROGRAM=... -DLIBRARIES=... -DFOLDER=... -P moved.cmake
file(REMOVE_RECURSE ${FOLDER})
file(COPY ${PROGRAM} ${LIBRARIES} DESTINATION ${FOLDER} FOLLOW_SYMLINK_CHAIN)
get_filename_component(name ${PROGRAM} NAME)
execute_process(COMMAND ${CMAKE_COMMAND} -E env LD_TRACE_LOADED_OBJECTS=1 ${FOLDER}/${name}
    OUTPUT_VARIABLE linked COMMAND_ERROR_IS_FATAL ANY)
foreach(library libombrix_host.so.0 libombrix_platform.so)
    if(NOT linked MATCHES "=> ${FOLDER}/${library}")
        message(FATAL_ERROR "${name} is linked with libraries elsewhere: ${linked}")
    endif()
endforeach()
# From another folder, and without the name of the plug-in's file.
execute_process(COMMAND ${FOLDER}/${name} WORKING_DIRECTORY / OUTPUT_VARIABLE said COMMAND_ERROR_IS_FATAL ANY)
if(NOT said MATCHES "red 40")
    message(FATAL_ERROR "${name} says: ${said}")
endif()
