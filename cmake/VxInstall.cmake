# Install rules: libraries, headers, the CMake package and a pkg-config file per library.
include(CMakePackageConfigHelpers)

get_property(libraries GLOBAL PROPERTY VX_LIBRARIES)
set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/vxattribute)

install(TARGETS ${libraries}
    EXPORT vxattributeTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(EXPORT vxattributeTargets NAMESPACE vxattribute:: DESTINATION ${package_dir})

configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/vxattributeConfig.cmake.in
    ${PROJECT_BINARY_DIR}/vxattributeConfig.cmake INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/vxattributeConfigVersion.cmake
    COMPATIBILITY SameMinorVersion) # until 1.0, minor versions may break sources
install(FILES
    ${PROJECT_BINARY_DIR}/vxattributeConfig.cmake
    ${PROJECT_BINARY_DIR}/vxattributeConfigVersion.cmake
    DESTINATION ${package_dir})

# Relative paths, so that the install tree can be moved.
file(RELATIVE_PATH up /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
string(REGEX REPLACE "/$" "" up "${up}")
set(VX_PC_PREFIX "\${pcfiledir}/${up}")
foreach(library ${libraries})
    get_target_property(links ${library} INTERFACE_LINK_LIBRARIES)
    set(VX_PC_NAME ${library})
    set(VX_PC_REQUIRES "")
    if(links)
        list(FILTER links INCLUDE REGEX "^vx[a-z]+$")
        list(JOIN links " " VX_PC_REQUIRES)
    endif()
    # For static linking. Requires.private would not do: it would require OpenSSL's development files
    # for programs that need none of them.
    set(VX_PC_LIBS_PRIVATE "")
    get_target_property(links ${library} LINK_LIBRARIES)
    if("OpenSSL::Crypto" IN_LIST links)
        set(VX_PC_LIBS_PRIVATE -lcrypto)
    endif()
    configure_file(${PROJECT_SOURCE_DIR}/cmake/library.pc.in ${PROJECT_BINARY_DIR}/${library}.pc @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/${library}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endforeach()
