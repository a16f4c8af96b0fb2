# What "cmake --install <build folder> --prefix <any folder>" puts there: the program in a folder of its own, together with
# what it looks for beside itself, and on Unix what a desktop needs to offer it.
set(program_folder lib/varda)
if(WIN32)
    set(program_folder .)
endif()

install(TARGETS varda RUNTIME DESTINATION ${program_folder})
install(DIRECTORY data/ DESTINATION ${program_folder}/Data)
install(DIRECTORY DESTINATION ${program_folder}/Log)
install(FILES ${PROJECT_BINARY_DIR}/bin/VARDA.CHM DESTINATION ${program_folder} OPTIONAL)
if(WIN32)
    install(TARGETS varda-cli RUNTIME DESTINATION ${program_folder})
    windows_licences(Licences)
    return()
endif()
install(FILES LICENSE DESTINATION share/doc/varda RENAME copyright)

if(NOT UNIX OR APPLE)
    return()
endif()
set(packaging ${PROJECT_SOURCE_DIR}/packaging)
set(made ${PROJECT_BINARY_DIR}/packaging)

# The command is a link; the program finds its folder through it.
file(MAKE_DIRECTORY ${made})
file(CREATE_LINK ../${program_folder}/varda ${made}/varda SYMBOLIC)
install(FILES ${made}/varda DESTINATION bin)

# The date of this version is the changelog's.
string(REPLACE "." "\\." version_pattern ${PROJECT_VERSION})
set(heading "^## \\[${version_pattern}\\] - ([0-9-]+)$")
file(STRINGS CHANGELOG.md entry REGEX "${heading}")
if(NOT entry)
    message(FATAL_ERROR "CHANGELOG.md has no entry \"## [${PROJECT_VERSION}] - DATE\".")
endif()
string(REGEX REPLACE "${heading}" "\\1" release_date "${entry}")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS CHANGELOG.md)

configure_file(${packaging}/${VARDA_APPLICATION_ID}.metainfo.xml.in ${made}/${VARDA_APPLICATION_ID}.metainfo.xml @ONLY)
configure_file(${packaging}/varda.1.in ${made}/varda.1 @ONLY)
install(FILES ${packaging}/${VARDA_APPLICATION_ID}.desktop DESTINATION share/applications)
install(FILES ${made}/${VARDA_APPLICATION_ID}.metainfo.xml DESTINATION share/metainfo)
install(DIRECTORY ${packaging}/icons/hicolor DESTINATION share/icons)
install(FILES ${packaging}/${VARDA_APPLICATION_ID}.mime.xml DESTINATION share/mime/packages
    RENAME ${VARDA_APPLICATION_ID}.xml)

# What the tool says of itself.
add_custom_command(OUTPUT ${made}/varda-cli.1 ${made}/varda-cli.bash
    COMMAND varda-cli --print-manual-page > ${made}/varda-cli.1
    COMMAND varda-cli --print-bash-completion > ${made}/varda-cli.bash
    DEPENDS varda-cli
    COMMENT "Manual page and completion of varda-cli"
    VERBATIM)
install(TARGETS varda-cli RUNTIME DESTINATION bin)
install(FILES ${made}/varda-cli.bash DESTINATION share/bash-completion/completions RENAME varda-cli)

# Debian wants these compressed as far as it goes, without name and time. Part of a full build, not of the program: that can be
# built where bash or GNU's date is lacking.
add_custom_command(OUTPUT ${made}/changelog.gz ${made}/varda.1.gz ${made}/varda-cli.1.gz
    COMMAND ${packaging}/debian-changelog ${PROJECT_SOURCE_DIR}/CHANGELOG.md "${VARDA_MAINTAINER}" > ${made}/changelog
    COMMAND gzip -9nkf ${made}/changelog ${made}/varda.1 ${made}/varda-cli.1
    DEPENDS ${packaging}/debian-changelog ${PROJECT_SOURCE_DIR}/CHANGELOG.md ${made}/varda.1 ${made}/varda-cli.1 ${made}/varda-cli.bash
    COMMENT "Changelog and manual page"
    VERBATIM)
add_custom_target(varda_documents ALL DEPENDS ${made}/changelog.gz ${made}/varda.1.gz ${made}/varda-cli.1.gz)
install(FILES ${made}/changelog.gz DESTINATION share/doc/varda)
install(FILES ${made}/varda.1.gz ${made}/varda-cli.1.gz DESTINATION share/man/man1)
