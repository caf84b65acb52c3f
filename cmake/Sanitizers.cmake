# XREFRESHER_SANITIZE: a list for -fsanitize=, set by the presets.
set(XREFRESHER_SANITIZE "" CACHE STRING "Sanitizers to build with")
# xsandbox waits for others most of its time: with ThreadSanitizer its server and all of the
# client's side are built, and the native xsandbox drives them, as it drives a client under Wine.
set(XREFRESHER_XSANDBOX ON)
if(WIN32 OR XREFRESHER_SANITIZE STREQUAL thread)
    set(XREFRESHER_XSANDBOX OFF)
endif()
if(XREFRESHER_SANITIZE)
    add_compile_options(-fsanitize=${XREFRESHER_SANITIZE} -fno-omit-frame-pointer
                        -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${XREFRESHER_SANITIZE})
endif()
