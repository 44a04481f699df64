# nuAddLibrary(<name> ALIAS <alias> [LINKS <target>...])
#
# A shared library of every source file below the current folder. Its include roots are the
# repository root ("host/...", "common/...") and source/Components/xml ("nuXmlSax.h").
function(nuAddLibrary name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "ALIAS" "LINKS")

    file(GLOB_RECURSE sources CONFIGURE_DEPENDS *.cpp)
    file(GLOB_RECURSE headers CONFIGURE_DEPENDS *.h)
    add_library(${name} SHARED ${sources} ${headers})
    add_library(nuxml::${arg_ALIAS} ALIAS ${name})
    target_include_directories(${name} PUBLIC
        $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>
        $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/source/Components/xml>
        $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/nuxml>)
    target_compile_features(${name} PUBLIC cxx_std_20)
    target_link_libraries(${name} PUBLIC ${arg_LINKS} PRIVATE $<BUILD_INTERFACE:nuxmlSettings>)
    set_target_properties(${name} PROPERTIES
        EXPORT_NAME ${arg_ALIAS}
        VERSION ${PROJECT_VERSION}
        SOVERSION 0
        INSTALL_RPATH "$ORIGIN")
endfunction()
