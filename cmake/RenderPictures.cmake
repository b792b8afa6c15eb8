# Run with cmake -P: renders every drawing of PICTURE_LIST (names without suffix, below SOURCE_DIR) to
# OUTPUT_DIR as name.png in its own size and name@2x.png. A picture that is newer than its drawing is kept.

function(render drawing picture)
    if(EXISTS ${picture} AND NOT ${drawing} IS_NEWER_THAN ${picture})
        return()
    endif()
    get_filename_component(folder ${picture} DIRECTORY)
    file(MAKE_DIRECTORY ${folder})
    execute_process(
        COMMAND ${RSVG_CONVERT} ${ARGN} --output ${picture} ${drawing}
        RESULT_VARIABLE result
        ERROR_VARIABLE message)
    if(NOT result EQUAL 0)
        file(REMOVE ${picture})
        message(FATAL_ERROR "${drawing} could not be rendered: ${message}")
    endif()
endfunction()

file(READ ${PICTURE_LIST} pictures)
foreach(name IN LISTS pictures)
    render(${SOURCE_DIR}/${name}.svg ${OUTPUT_DIR}/${name}.png --zoom 1)
    render(${SOURCE_DIR}/${name}.svg ${OUTPUT_DIR}/${name}@2x.png --zoom 2)
endforeach()
