# XREFRESHER_SANITIZE: a list for -fsanitize=, set by the presets.
set(XREFRESHER_SANITIZE "" CACHE STRING "Sanitizers to build with")
if(XREFRESHER_SANITIZE)
    add_compile_options(-fsanitize=${XREFRESHER_SANITIZE} -fno-omit-frame-pointer
                        -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${XREFRESHER_SANITIZE})
endif()
