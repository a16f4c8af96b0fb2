# What users get is hardened: a release build for Linux. Other builds stay as they are, and sanitizers bring their own.
# scripts/check-hardening reads it back from the programs. To be included where the product's own sources begin.
set(VARDA_HARDENED OFF)
if(CMAKE_BUILD_TYPE STREQUAL "Release" AND CMAKE_SYSTEM_NAME STREQUAL "Linux" AND NOT VARDA_SANITIZE)
    set(VARDA_HARDENED ON)
    # Of _FORTIFY_SOURCE 3 wants gcc 12; an older one takes it for 2.
    add_compile_options(-fPIE -fstack-protector-strong -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3 -D_GLIBCXX_ASSERTIONS)
    add_link_options(-Wl,-z,relro,-z,now,-z,noexecstack $<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>:-pie>)
    if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|amd64|AMD64)$")
        add_compile_options(-fcf-protection=full)
        add_link_options(-Wl,-z,ibt,-z,shstk)
    endif()
endif()
set(VARDA_HARDENED ${VARDA_HARDENED} PARENT_SCOPE)
