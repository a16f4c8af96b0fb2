# Lays pages and pictures out as the help file holds them, for chmcmd keeps no path that leads upwards: the pages at the top,
# the pictures in a folder below.
# cmake -D docs=FOLDER -D stage=FOLDER -P stage_help.cmake

file(REMOVE_RECURSE ${stage})
file(COPY ${docs}/images DESTINATION ${stage} FILES_MATCHING PATTERN "*.png")
file(GLOB files ${docs}/help/*)
foreach(file IN LISTS files)
    get_filename_component(name ${file} NAME)
    file(READ ${file} text)
    string(REPLACE "\"../images/" "\"images/" text "${text}")
    file(WRITE ${stage}/${name} "${text}")
endforeach()
