# Install, find_package(nuxml CONFIG), pkg-config and packages. The headers keep their paths below
# include/nuxml, so an application writes the same includes as this repository does.
include(CMakePackageConfigHelpers)

install(TARGETS nuhost rNuCommon2010 nuxml EXPORT nuxmlTargets)
if(TARGET nuxmlTool)
    install(TARGETS nuxmlTool)
endif()
foreach(folder host common)
    install(DIRECTORY ${folder} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/nuxml
        FILES_MATCHING PATTERN "*.h")
endforeach()
install(DIRECTORY source/Components/xml/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/nuxml
    FILES_MATCHING PATTERN "*.h")

set(configFolder ${CMAKE_INSTALL_LIBDIR}/cmake/nuxml)
install(EXPORT nuxmlTargets NAMESPACE nuxml:: DESTINATION ${configFolder}
    FILE nuxmlConfig.cmake)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/nuxmlConfigVersion.cmake
    COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/nuxmlConfigVersion.cmake DESTINATION ${configFolder})

file(RELATIVE_PATH prefixFromPkgConfig
    ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
configure_file(cmake/nuxml.pc.in nuxml.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/nuxml.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
install(FILES LICENSE README.md CHANGELOG.md DESTINATION ${CMAKE_INSTALL_DOCDIR})

set(CPACK_GENERATOR DEB TGZ)
set(CPACK_PACKAGE_VENDOR "the nuxml authors")
set(CPACK_PACKAGE_CONTACT "the nuxml authors")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${NUXML_LIBRARY_FOLDER})
include(CPack)
