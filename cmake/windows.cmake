# windows_program(TARGET): a program with the icon, the version and the manifest of packaging/windows in it.
set(VARDA_TITLE "VR-Series PLC Test & Simulator")

function(windows_program target)
    set(VARDA_FOUR_NUMBERS ${PROJECT_VERSION}.0)
    string(REPLACE "." "," VARDA_FOUR_NUMBERS_COMMA ${VARDA_FOUR_NUMBERS})
    set(VARDA_MANIFEST ${CMAKE_CURRENT_BINARY_DIR}/${target}.manifest)
    set(VARDA_PROGRAM ${target})
    set(resources ${PROJECT_SOURCE_DIR}/packaging/windows)
    configure_file(${resources}/varda.manifest.in ${VARDA_MANIFEST} @ONLY)
    configure_file(${resources}/varda.rc.in ${CMAKE_CURRENT_BINARY_DIR}/${target}.rc @ONLY)
    set_source_files_properties(${CMAKE_CURRENT_BINARY_DIR}/${target}.rc PROPERTIES
        OBJECT_DEPENDS "${VARDA_MANIFEST};${resources}/varda.ico")
    target_sources(${target} PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/${target}.rc)
    target_link_options(${target} PRIVATE $<$<CONFIG:Release>:-s>)
endfunction()

# windows_licences(FOLDER): the licence texts of everything that is linked into the program go with it. Qt's were collected when
# it was built.
function(windows_licences folder)
    install(FILES ${PROJECT_SOURCE_DIR}/LICENSE DESTINATION ${folder} RENAME Varda.txt)
    install(FILES ${PROJECT_SOURCE_DIR}/packaging/windows/README.txt DESTINATION ${folder})
    install(DIRECTORY ${QT6_INSTALL_PREFIX}/licences/ DESTINATION ${folder}/Qt)
    foreach(package libasio-dev libcli11-dev libpugixml-dev nlohmann-json3-dev g++-mingw-w64-x86-64-posix mingw-w64-x86-64-dev nsis)
        set(text /usr/share/doc/${package}/copyright)
        if(NOT EXISTS ${text})
            message(WARNING "No licence text of ${package}: ${text} is not there.")
            continue()
        endif()
        install(FILES ${text} DESTINATION ${folder} RENAME ${package}.txt)
    endforeach()
endfunction()
