# Compile and link flags that all our targets share. Link the target as
# $<BUILD_INTERFACE:vx_flags>, which keeps it out of the export set.
add_library(vx_flags INTERFACE)
target_compile_features(vx_flags INTERFACE cxx_std_20)
target_compile_options(vx_flags INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor
    $<$<BOOL:${VX_WERROR}>:-Werror>
    # g++ 12 wrongly reports `"text" + string` as an overlapping copy (its bug 105651).
    $<$<AND:$<CXX_COMPILER_ID:GNU>,$<VERSION_LESS:$<CXX_COMPILER_VERSION>,13>>:-Wno-restrict>
    # Source paths in error locations and debug information are relative to the project.
    -ffile-prefix-map=${PROJECT_SOURCE_DIR}/=
    # A library that has unique symbols, which are one per process, is never unloaded.
    $<$<CXX_COMPILER_ID:GNU>:-fno-gnu-unique>
    # Lets a library inline its own exported functions. clang does so by default.
    $<$<CXX_COMPILER_ID:GNU>:-fno-semantic-interposition>)

# Bind calls at load, and make their table read-only then. Binding at the first call would save the
# vector registers on the stack, with parts of keys in them, and nothing would wipe these.
target_link_options(vx_flags INTERFACE LINKER:-z,relro,-z,now)

if(VX_SANITIZE)
    target_compile_options(vx_flags INTERFACE -fsanitize=${VX_SANITIZE} -fno-omit-frame-pointer)
    target_link_options(vx_flags INTERFACE -fsanitize=${VX_SANITIZE})
elseif(NOT VX_FUZZER)
    # Undefined symbols fail the link. Those of the sanitizers of clang are left undefined on purpose.
    target_link_options(vx_flags INTERFACE $<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,SHARED_LIBRARY>:LINKER:-z,defs>)
endif()
if(VX_FUZZER)
    target_compile_options(vx_flags INTERFACE -fsanitize=fuzzer-no-link,address,undefined -fno-omit-frame-pointer)
    target_link_options(vx_flags INTERFACE -fsanitize=address,undefined)
endif()
