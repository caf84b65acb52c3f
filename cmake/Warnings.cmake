# Flags of everything written here; generated code goes without them.
add_library(xr_flags INTERFACE)
target_compile_options(xr_flags INTERFACE
    $<$<CXX_COMPILER_ID:GNU,Clang>:-Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror>
    $<$<CXX_COMPILER_ID:Clang>:-Wthread-safety>
    # Not errors with Visual Studio: no one here sees what a new version of it warns of.
    $<$<CXX_COMPILER_ID:MSVC>:/W4 /permissive- /utf-8 /Zc:preprocessor>
    # Log lines name a source by its path in the repository.
    $<$<CXX_COMPILER_ID:GNU,Clang>:-fmacro-prefix-map=${PROJECT_SOURCE_DIR}/=>)
target_include_directories(xr_flags INTERFACE ${PROJECT_SOURCE_DIR}/src ${PROJECT_SOURCE_DIR})
