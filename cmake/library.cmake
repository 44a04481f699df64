# Built libraries lie as installed ones do, seen from the programs in bin, so that both find each other by the
# same relative path and installing changes nothing in them.
file(RELATIVE_PATH NUXML_LIBRARIES_FROM_BIN
    ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
cmake_path(ABSOLUTE_PATH NUXML_LIBRARIES_FROM_BIN BASE_DIRECTORY ${PROJECT_BINARY_DIR}/bin
    NORMALIZE OUTPUT_VARIABLE NUXML_LIBRARY_FOLDER)

# What an application that was linked needs: programs of 0.1 run with every 0.1.x and with no other, from 1.0 on
# with every 1.x.y. The names of the libraries, what find_package takes and the packages follow from it.
if(PROJECT_VERSION_MAJOR EQUAL 0)
    set(NUXML_ABI_VERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR})
    set(NUXML_COMPATIBILITY SameMinorVersion)
else()
    set(NUXML_ABI_VERSION ${PROJECT_VERSION_MAJOR})
    set(NUXML_COMPATIBILITY SameMajorVersion)
endif()

set(staticByDefault OFF)
if(DEFINED BUILD_SHARED_LIBS AND NOT BUILD_SHARED_LIBS)
    set(staticByDefault ON)
endif()
option(NUXML_STATIC "Build static libraries" ${staticByDefault})
if(NUXML_STATIC)
    set(NUXML_LIBRARY_TYPE STATIC)
else()
    set(NUXML_LIBRARY_TYPE SHARED)
endif()

# nuFindLibraries(<target> <folder>)
#
# Makes a target find the libraries in a folder that is given from its own; the system knows by itself what is
# installed below /usr.
function(nuFindLibraries target folder)
    if(NOT CMAKE_INSTALL_PREFIX STREQUAL /usr)
        cmake_path(APPEND origin "$ORIGIN" ${folder})
        set_target_properties(${target} PROPERTIES BUILD_WITH_INSTALL_RPATH ON INSTALL_RPATH "${origin}")
    endif()
endfunction()

# nuVersionSymbols(<name>)
#
# Gives every symbol that the checked list names a version of the library. What the list does not name yet, and
# what the standard library's templates leave behind, stays without one.
function(nuVersionSymbols name)
    set(list ${PROJECT_SOURCE_DIR}/tests/package/symbols/lib${name}.txt)
    set(script ${CMAKE_CURRENT_BINARY_DIR}/${name}.version)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${list})

    # 1. The names as the linker knows them; the list shortens two types and leaves marks of the ABI out.
    file(READ ${list} names)
    foreach(character IN ITEMS char char16_t)
        string(REPLACE "char" "" prefix ${character})
        string(REPLACE "16_t" "u16" prefix "${prefix}")
        string(REPLACE "std::${prefix}string_view"
            "std::basic_string_view<${character}, std::char_traits<${character}> >" names "${names}")
    endforeach()
    string(REGEX REPLACE "([^\n(]+)([^\n]*)\n" [[        "\1\2"; "\1[abi:cxx11]\2";
]] names "${names}")

    # 2. The script. A name that is gone is none of the linker's business: the list's own test tells.
    get_target_property(version ${name} SOVERSION)
    string(TOUPPER ${name}_${version} version)
    file(CONFIGURE OUTPUT ${script} @ONLY CONTENT "@version@ {
    global:
        extern \"C++\" {
@names@        non-virtual?thunk?to?*; virtual?thunk?to?*;
        };
};
")
    target_link_options(${name} PRIVATE -Wl,--version-script=${script})
    include(CheckLinkerFlag)
    check_linker_flag(CXX -Wl,--undefined-version NUXML_HAS_UNDEFINED_VERSION)
    if(NUXML_HAS_UNDEFINED_VERSION)
        target_link_options(${name} PRIVATE -Wl,--undefined-version)
    endif()
    set_property(TARGET ${name} APPEND PROPERTY LINK_DEPENDS ${script})
endfunction()

# nuAddLibrary(<name> ALIAS <alias> [LINKS <target>...])
#
# A library, shared or static, of every source file below the current folder. Its include roots are the
# repository root ("host/...", "common/...") and source/Components/xml ("nuXmlSax.h"); they stand before those of
# a project that this one is part of. Such a project gets the public headers and no more.
function(nuAddLibrary name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "ALIAS" "LINKS")

    file(GLOB_RECURSE sources CONFIGURE_DEPENDS *.cpp)
    file(GLOB_RECURSE headers CONFIGURE_DEPENDS *.h)
    add_library(${name} ${NUXML_LIBRARY_TYPE} ${sources} ${headers})
    add_library(nuxml::${arg_ALIAS} ALIAS ${name})
    set(roots ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/source/Components/xml)
    target_include_directories(${name} BEFORE PRIVATE ${roots})
    target_include_directories(${name} INTERFACE
        "$<BUILD_INTERFACE:$<IF:$<BOOL:${PROJECT_IS_TOP_LEVEL}>,${roots},${PROJECT_BINARY_DIR}/include>>"
        $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/nuxml>)
    target_compile_features(${name} PUBLIC cxx_std_20)
    target_link_libraries(${name} PUBLIC ${arg_LINKS} PRIVATE $<BUILD_INTERFACE:nuxmlSettings>)
    set_target_properties(${name} PROPERTIES
        EXPORT_NAME ${arg_ALIAS}
        VERSION ${PROJECT_VERSION}
        SOVERSION ${NUXML_ABI_VERSION}
        LIBRARY_OUTPUT_DIRECTORY ${NUXML_LIBRARY_FOLDER}
        ARCHIVE_OUTPUT_DIRECTORY ${NUXML_LIBRARY_FOLDER})
    if(NUXML_LIBRARY_TYPE STREQUAL SHARED)
        nuFindLibraries(${name} "")
        nuVersionSymbols(${name})
    endif()
endfunction()
