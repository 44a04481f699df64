# Install, find_package(nuxml CONFIG) and pkg-config, in components: runtime, development, tool and documents. The
# public headers keep their paths below include/nuxml, so an application writes the same includes as this
# repository does.
include(CMakePackageConfigHelpers)

install(TARGETS nuhost rNuCommon2010 nuxml EXPORT nuxmlTargets
    LIBRARY COMPONENT runtime NAMELINK_COMPONENT development
    ARCHIVE COMPONENT development)
install(CODE "
    include(\"${PROJECT_SOURCE_DIR}/cmake/publicHeaders.cmake\")
    file(REMOVE_RECURSE \"${PROJECT_BINARY_DIR}/installedHeaders\")
    nuStagePublicHeaders(\"${PROJECT_SOURCE_DIR}\" \"${PROJECT_BINARY_DIR}/installedHeaders\" sources)" COMPONENT development)
install(DIRECTORY ${PROJECT_BINARY_DIR}/installedHeaders/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/nuxml
    COMPONENT development)

set(configFolder ${CMAKE_INSTALL_LIBDIR}/cmake/nuxml)
install(EXPORT nuxmlTargets NAMESPACE nuxml:: DESTINATION ${configFolder}
    FILE nuxmlConfig.cmake COMPONENT development)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/nuxmlConfigVersion.cmake
    COMPATIBILITY ${NUXML_COMPATIBILITY})
install(FILES ${PROJECT_BINARY_DIR}/nuxmlConfigVersion.cmake DESTINATION ${configFolder}
    COMPONENT development)

file(RELATIVE_PATH prefixFromPkgConfig
    ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
set(libraryFlags "-L\${libdir} -lnuxml -lrNuCommon2010 -lnuhost")
if(NUXML_STATIC)
    # The compiler's own library is named because a C compiler may link.
    string(APPEND libraryFlags " -Wl,-u,nuXmlPackage -lstdc++")
endif()
configure_file(cmake/nuxml.pc.in nuxml.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/nuxml.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
    COMPONENT development)

if(TARGET nuxmlTool)
    install(TARGETS nuxmlTool COMPONENT tool)
endif()
if(TARGET nuxmlToolTexts)
    set(texts ${PROJECT_BINARY_DIR}/tools/nuxml)
    install(FILES ${texts}/nuxml.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT tool)
    install(FILES ${texts}/completion.bash RENAME nuxml
        DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT tool)
    install(FILES ${texts}/completion.zsh RENAME _nuxml
        DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions COMPONENT tool)
    install(FILES ${texts}/completion.fish RENAME nuxml.fish
        DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d COMPONENT tool)
endif()
# Packages of Debian have these in folders of their own.
install(FILES LICENSE README.md CHANGELOG.md DESTINATION ${CMAKE_INSTALL_DOCDIR}
    COMPONENT documents)
