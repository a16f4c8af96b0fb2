# Copies from the tour's pictures those that the manual names, and only where they have changed.
# cmake -D help=FOLDER -D tour=FOLDER -P take_pictures.cmake

file(STRINGS ${help}/varda.hhp pictures REGEX "^images/.+\\.png$")
foreach(picture IN LISTS pictures)
    get_filename_component(name ${picture} NAME)
    if(NOT EXISTS ${tour}/${name})
        message(FATAL_ERROR "The manual shows ${picture}, but the guided tour has no picture of that name.")
    endif()
    file(COPY_FILE ${tour}/${name} ${help}/${picture} ONLY_IF_DIFFERENT)
endforeach()
