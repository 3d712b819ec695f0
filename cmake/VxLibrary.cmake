# vx_library(NAME SOURCES ... HEADERS ... [DEPENDS ...] [PRIVATE_DEPENDS ...] [IDENTITIES FILE])
#
# Adds a shared library. Symbols are hidden by default. HEADERS are installed, and the target
# all_verify_interface_header_sets compiles each of them alone. The library exports names of its own
# namespace only, and uses its own definitions of them, whatever else is loaded in the process: see
# docs/decisions/0007-libraries-keep-to-themselves.md. IDENTITIES is a file that lists the exceptions:
# objects that have one address in the process.
function(vx_library name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "IDENTITIES" "SOURCES;HEADERS;DEPENDS;PRIVATE_DEPENDS")
    add_library(${name} SHARED ${arg_SOURCES})
    add_library(vxattribute::${name} ALIAS ${name})
    target_sources(${name} PUBLIC FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR}/int/src FILES ${arg_HEADERS})
    target_compile_features(${name} PUBLIC cxx_std_20)
    target_link_libraries(${name}
        PUBLIC ${arg_DEPENDS}
        PRIVATE $<BUILD_INTERFACE:vx_flags> ${arg_PRIVATE_DEPENDS})
    set_target_properties(${name} PROPERTIES
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON
        VERIFY_INTERFACE_HEADER_SETS ON
        VERSION ${PROJECT_VERSION}
        SOVERSION ${VX_ABI_VERSION}
        INSTALL_RPATH $ORIGIN)

    string(LENGTH ${name} length)
    set(VX_MANGLED ${length}${name})
    set(map ${CMAKE_CURRENT_BINARY_DIR}/${name}.map)
    configure_file(${PROJECT_SOURCE_DIR}/cmake/library.map.in ${map} @ONLY)
    set(binding LINKER:-Bsymbolic)
    if(arg_IDENTITIES)
        set(binding LINKER:--dynamic-list=${arg_IDENTITIES}) # binds all other symbols within the library
    endif()
    target_link_options(${name} PRIVATE LINKER:--version-script=${map} ${binding})
    set_property(TARGET ${name} APPEND PROPERTY LINK_DEPENDS ${map} ${arg_IDENTITIES})
    set_property(GLOBAL APPEND PROPERTY VX_LIBRARIES ${name})
endfunction()
