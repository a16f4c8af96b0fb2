# varda_options: the language level and the warnings of every target of ours.
add_library(varda_options INTERFACE)
target_compile_options(varda_options INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wold-style-cast -Woverloaded-virtual
    $<$<NOT:$<BOOL:$<TARGET_PROPERTY:UNITY_BUILD>>>:-Wshadow> # a name of a source hides none of another's
    $<$<CXX_COMPILER_ID:GNU>:-Wduplicated-cond -Wlogical-op>
    # Of GCC 12 these three speak of the library's own comparison, copying and insertion, with bounds that cannot be.
    $<$<CXX_COMPILER_ID:GNU>:-Wno-stringop-overread -Wno-stringop-overflow -Wno-array-bounds>
    $<$<BOOL:${VARDA_WARNINGS_AS_ERRORS}>:-Werror>)

if(VARDA_SANITIZE)
    target_compile_options(varda_options INTERFACE
        -fsanitize=${VARDA_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(varda_options INTERFACE -fsanitize=${VARDA_SANITIZE})
endif()

# varda_qt_options: what targets that use Qt add to it.
add_library(varda_qt_options INTERFACE)
target_link_libraries(varda_qt_options INTERFACE varda_options)
target_compile_definitions(varda_qt_options INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_CAST_FROM_BYTEARRAY
    QT_NO_NARROWING_CONVERSIONS_IN_CONNECT QT_USE_QSTRINGBUILDER)
