# vx_library(NAME SOURCES ... HEADERS ... [DEPENDS ...] [PRIVATE_DEPENDS ...])
#
# One shared library of the family: hidden by default, own SOVERSION, headers in a file set that is
# installed and whose every member is compiled alone (all_verify_interface_header_sets).
function(vx_library name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;HEADERS;DEPENDS;PRIVATE_DEPENDS")
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
    set_property(GLOBAL APPEND PROPERTY VX_LIBRARIES ${name})
endfunction()
