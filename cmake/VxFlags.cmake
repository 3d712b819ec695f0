# Compile and link flags that all our targets share. They stay out of the export set: link the
# target as $<BUILD_INTERFACE:vx_flags>.
add_library(vx_flags INTERFACE)
target_compile_features(vx_flags INTERFACE cxx_std_20)
target_compile_options(vx_flags INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor
    $<$<BOOL:${VX_WERROR}>:-Werror>
    # g++ 12 takes `"text" + string` for an overlapping copy inside std::string (its bug 105651).
    $<$<AND:$<CXX_COMPILER_ID:GNU>,$<VERSION_LESS:$<CXX_COMPILER_VERSION>,13>>:-Wno-restrict>
    # Source paths in error locations and debug information are relative to the project.
    -ffile-prefix-map=${PROJECT_SOURCE_DIR}/=
    # Unique symbols are one per process, and a library that has any is never unloaded.
    $<$<CXX_COMPILER_ID:GNU>:-fno-gnu-unique>
    # A library may inline its own exported functions, as clang does by itself.
    $<$<CXX_COMPILER_ID:GNU>:-fno-semantic-interposition>)

# Calls are bound at load and their table is read-only then. Binding at the first call would save the
# vector registers on the stack, and with them what they hold of keys; nothing wipes it there.
target_link_options(vx_flags INTERFACE LINKER:-z,relro,-z,now)

if(VX_SANITIZE)
    target_compile_options(vx_flags INTERFACE -fsanitize=${VX_SANITIZE} -fno-omit-frame-pointer)
    target_link_options(vx_flags INTERFACE -fsanitize=${VX_SANITIZE})
elseif(NOT VX_FUZZER)
    # Undefined symbols fail the link. The sanitizers of clang leave theirs open on purpose.
    target_link_options(vx_flags INTERFACE $<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,SHARED_LIBRARY>:LINKER:-z,defs>)
endif()
if(VX_FUZZER)
    target_compile_options(vx_flags INTERFACE -fsanitize=fuzzer-no-link,address,undefined -fno-omit-frame-pointer)
    target_link_options(vx_flags INTERFACE -fsanitize=address,undefined)
endif()
