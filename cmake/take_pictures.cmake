# Copies from the tour's pictures those that a document shows, and only where they have changed.
# cmake -D source=FOLDER -D tour=FOLDER -P take_pictures.cmake

file(GLOB documents ${source}/README.md ${source}/docs/*.md ${source}/docs/help/*.html)
set(shown "")
foreach(document IN LISTS documents)
    file(READ ${document} text)
    string(REGEX MATCHALL "images/[a-z0-9-]+\\.png" pictures "${text}")
    list(APPEND shown ${pictures})
endforeach()
list(REMOVE_DUPLICATES shown)
foreach(picture IN LISTS shown)
    get_filename_component(name ${picture} NAME)
    if(NOT EXISTS ${tour}/${name})
        message(FATAL_ERROR "A document shows ${picture}, but the guided tour has no picture of that name.")
    endif()
    file(COPY_FILE ${tour}/${name} ${source}/docs/help/images/${name} ONLY_IF_DIFFERENT)
endforeach()
