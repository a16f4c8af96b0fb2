# Read by cpack before each package. Without this tool a .deb would name no library that it needs.
if(CPACK_GENERATOR STREQUAL "DEB")
    find_program(DPKG_SHLIBDEPS dpkg-shlibdeps)
    if(NOT DPKG_SHLIBDEPS)
        message(FATAL_ERROR "No .deb without dpkg-shlibdeps (Debian: dpkg-dev). \"cpack -G TGZ\" makes the .tar.gz alone.")
    endif()
endif()
