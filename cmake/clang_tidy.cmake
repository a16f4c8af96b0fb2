# clang-tidy takes its rules from the nearest .clang-tidy above a file. This one, in the build folder, spares what moc
# writes: nearly all rules are off (all of them off is an error).
if(CMAKE_CXX_CLANG_TIDY)
    file(WRITE ${PROJECT_BINARY_DIR}/.clang-tidy "Checks: '-*,misc-definitions-in-headers'\n")
endif()
