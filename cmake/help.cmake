# The manual of docs/help as a help file beside the program: varda_help, built with varda wherever chmcmd is there.
# And screenshots: brings the pictures of docs/help/images up to date by taking the guided tour.

set(help_folder ${PROJECT_SOURCE_DIR}/docs/help)
set(help_file "")
find_program(CHM_COMPILER NAMES chmcmd chmcmd-3.2.2)

if(CHM_COMPILER)
    set(help_file ${PROJECT_BINARY_DIR}/bin/VARDA.CHM)
    set(help_stage ${PROJECT_BINARY_DIR}/help)
    # What the project file names is what the help file is made of.
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${help_folder}/varda.hhp)
    file(STRINGS ${help_folder}/varda.hhp help_sources REGEX "^[a-z0-9/-]+\\.(html|css|png)$")
    list(APPEND help_sources varda.hhp varda.hhc varda.hhk)
    list(TRANSFORM help_sources PREPEND ${help_folder}/)
    add_custom_command(OUTPUT ${help_file}
        # chmcmd writes beside the project file.
        COMMAND ${CMAKE_COMMAND} -E copy_directory ${help_folder} ${help_stage}
        # Scanning the pages would add nothing: the project file names everything.
        COMMAND ${CMAKE_COMMAND} -E chdir ${help_stage} ${CHM_COMPILER} --no-html-scan varda.hhp
        COMMAND ${CMAKE_COMMAND} -E copy ${help_stage}/VARDA.CHM ${help_file}
        DEPENDS ${help_sources}
        VERBATIM
        COMMENT "Manual VARDA.CHM")
    add_custom_target(varda_help DEPENDS ${help_file})
    add_dependencies(varda varda_help)
else()
    message(STATUS "No chmcmd (Debian package fp-utils): the program is built without its manual VARDA.CHM")
endif()

add_custom_target(screenshots
    COMMAND ${CMAKE_COMMAND} -E env QT_QPA_PLATFORM=offscreen LC_CTYPE=C.UTF-8
        $<TARGET_FILE:varda_tour> ${PROJECT_BINARY_DIR}/screenshots
    COMMAND ${CMAKE_COMMAND} -D help=${help_folder} -D tour=${PROJECT_BINARY_DIR}/screenshots
        -P ${PROJECT_SOURCE_DIR}/cmake/take_pictures.cmake
    DEPENDS varda_tour
    VERBATIM USES_TERMINAL
    COMMENT "Pictures of the manual")
