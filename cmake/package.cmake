# Packages: `cpack` in a build folder that was configured with -DCMAKE_INSTALL_PREFIX=/usr (preset package) makes
# three for Debian, libnuxml<abi>, libnuxml-dev and nuxml; from any folder it makes an archive.
# The day of the build, or what SOURCE_DATE_EPOCH says, so that a build can be repeated.
string(TIMESTAMP packageDate "%a, %d %b %Y %H:%M:%S +0000" UTC)
set(contact "$ENV{DEBFULLNAME} <$ENV{DEBEMAIL}>")
if(NOT "$ENV{DEBEMAIL}" MATCHES "@")
    # A reserved name, which can be nobody's. An address of the machine's user would look like one that can be
    # written to, and give away who that is; and a build would not be the same elsewhere.
    set(contact "The nuxml authors <maintainers@nuxml.example>")
endif()

set(CPACK_GENERATOR TGZ)
set(CPACK_PACKAGE_VENDOR "the nuxml authors")
set(CPACK_PACKAGE_CONTACT "${contact}")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
if(NOT CMAKE_INSTALL_PREFIX STREQUAL /usr OR NOT NUXML_INSTALL)
    include(CPack)
    return()
endif()

set(CPACK_GENERATOR DEB TGZ)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "") # each package has its own
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_COMPONENTS_ALL runtime development tool)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_ARCHIVE_COMPONENT_INSTALL OFF)
set(CPACK_DEBIAN_PACKAGE_NAME nuxml)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "${contact}")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${NUXML_LIBRARY_FOLDER})
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)

set(runtimePackage libnuxml${NUXML_ABI_VERSION})
set(version ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})

# nuDescribePackage(<component> <name> <section> <text>)
#
# Names and describes one package, and gives it the files that each one has. The first line of the text is what
# lists of packages show.
macro(nuDescribePackage component name section text)
    string(TOUPPER ${component} upper)
    set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${name})
    set(CPACK_DEBIAN_${upper}_PACKAGE_SECTION ${section})
    set(CPACK_COMPONENT_${upper}_DESCRIPTION "${text}")
    set(folder ${PROJECT_BINARY_DIR}/package/${name})
    set(documents ${CMAKE_INSTALL_DATADIR}/doc/${name})
    file(MAKE_DIRECTORY ${folder})
    configure_file(cmake/debian/copyright.in ${folder}/copyright @ONLY)
    configure_file(cmake/debian/changelog.in ${folder}/changelog @ONLY)
    foreach(change IN ITEMS "changelog.Debian.gz;${folder}/changelog"
                            "changelog.gz;${PROJECT_SOURCE_DIR}/CHANGELOG.md")
        list(POP_FRONT change target)
        execute_process(COMMAND gzip -9nc ${change} OUTPUT_FILE ${folder}/${target}
            COMMAND_ERROR_IS_FATAL ANY)
    endforeach()
    install(FILES ${folder}/copyright ${folder}/changelog.Debian.gz ${folder}/changelog.gz
        DESTINATION ${documents} COMPONENT ${component})
    install(FILES cmake/debian/${component}.lintian-overrides RENAME ${name}
        DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides COMPONENT ${component})
endmacro()

nuDescribePackage(runtime ${runtimePackage} libs
"XML for C++: shared libraries
Reads XML of any size as SAX2 events or into a W3C DOM tree, selects nodes by
paths, writes documents and converts objects. This package holds the shared
libraries that programs need at run time.")
nuDescribePackage(development libnuxml-dev libdevel
"XML for C++: development files
Reads XML of any size as SAX2 events or into a W3C DOM tree, selects nodes by
paths, writes documents and converts objects. This package holds the headers
and what CMake and pkg-config need to find them.")
nuDescribePackage(tool nuxml text
"command-line tool for XML
Shows the nodes at a path as text, rows or JSON, changes many files in place,
formats, outlines and checks documents and converts them to JSON and back.")

install(FILES README.md DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/libnuxml-dev COMPONENT development)

set(CPACK_DEBIAN_RUNTIME_PACKAGE_SOURCE nuxml)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SOURCE nuxml)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/cmake/debian/triggers)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SHLIBDEPS OFF)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${runtimePackage} (= ${version})")
set(CPACK_DEBIAN_TOOL_PACKAGE_DEPENDS "${runtimePackage} (= ${version})")
include(CPack)
