# Run with cmake -P: renders the drawings APPS (of the program) and MIMETYPES (of its files) in the sizes of an icon
# theme below OUTPUT_DIR/hicolor, and puts the drawings beside them.

function(render context drawing)
    get_filename_component(name ${drawing} NAME_WE)
    foreach(size IN ITEMS 16 22 24 32 48 64 96 128 256 512)
        set(folder ${OUTPUT_DIR}/hicolor/${size}x${size}/${context})
        file(MAKE_DIRECTORY ${folder})
        execute_process(
            COMMAND ${RSVG_CONVERT} --width ${size} --height ${size} --output ${folder}/${name}.png ${drawing}
            RESULT_VARIABLE result
            ERROR_VARIABLE message)
        if(NOT result EQUAL 0)
            message(FATAL_ERROR "${drawing} could not be rendered: ${message}")
        endif()
    endforeach()
    file(COPY ${drawing} DESTINATION ${OUTPUT_DIR}/hicolor/scalable/${context})
endfunction()

file(REMOVE_RECURSE ${OUTPUT_DIR}/hicolor)
foreach(drawing IN LISTS APPS)
    render(apps ${drawing})
endforeach()
foreach(drawing IN LISTS MIMETYPES)
    render(mimetypes ${drawing})
endforeach()
