# Makes the examples anew in the folder MADE and compares them with those in COMMITTED.
execute_process(COMMAND ${PYTHON} ${SCRIPT} ${MADE} COMMAND_ERROR_IS_FATAL ANY)
file(GLOB files RELATIVE ${MADE} ${MADE}/*)
if(NOT files)
    message(FATAL_ERROR "${SCRIPT} made nothing")
endif()
foreach(file IN LISTS files)
    execute_process(COMMAND ${CMAKE_COMMAND} -E compare_files ${MADE}/${file} ${COMMITTED}/${file}
        COMMAND_ERROR_IS_FATAL ANY)
endforeach()
