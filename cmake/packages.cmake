# cmake --build <build folder> --target package: varda_<version>_<architecture>.deb, and a .tar.gz of one folder that runs
# where it is unpacked.
set(CPACK_GENERATOR TGZ)
set(CPACK_PACKAGE_NAME varda)
set(CPACK_PACKAGE_VENDOR "Varda developers")
set(CPACK_PACKAGE_CONTACT "${VARDA_MAINTAINER}")
set(CPACK_STRIP_FILES ON)
string(TOLOWER "varda-${PROJECT_VERSION}-${CMAKE_SYSTEM_NAME}-${CMAKE_SYSTEM_PROCESSOR}" CPACK_PACKAGE_FILE_NAME)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION comm)
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"A test and simulation tool for the serial host-link protocol of a family of
programmable logic controllers. In one window it offers a master that reads
and writes bits and words, a simulated controller with prepared answers, a
listener with a log, and a scenario runner.
.
A controller is built in, so a first transaction needs no cable.")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# What is only looked for while the program runs: the window on a desktop that has no X11, letters where no desktop is
# installed, what opens the manual, and a viewer for it.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "qt6-wayland, fonts-dejavu-core, xdg-utils, xchm | kchmviewer")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

# A .deb where there are .debs.
find_program(DPKG dpkg)
mark_as_advanced(DPKG)
if(DPKG AND CMAKE_SYSTEM_NAME STREQUAL "Linux")
    list(PREPEND CPACK_GENERATOR DEB)
endif()
set(CPACK_PROJECT_CONFIG_FILE ${PROJECT_SOURCE_DIR}/cmake/package_tools.cmake)
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/package_folders.cmake)

include(CPack)
