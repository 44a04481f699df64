# What every target of this project is compiled and linked with.

# A build without a stated type is an optimised one with debug information.
if(PROJECT_IS_TOP_LEVEL AND NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
    set(CMAKE_BUILD_TYPE RelWithDebInfo CACHE STRING "Build type" FORCE)
endif()

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

find_program(NUXML_CCACHE ccache)
mark_as_advanced(NUXML_CCACHE)
if(PROJECT_IS_TOP_LEVEL AND NUXML_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER ${NUXML_CCACHE})
endif()

# The settings as a target: `target_link_libraries(x PRIVATE nuxmlSettings)`.
add_library(nuxmlSettings INTERFACE)
target_compile_options(nuxmlSettings INTERFACE -Wall -Wextra -Wconversion)
# A library calls its own functions directly; nobody replaces them one by one.
target_compile_options(nuxmlSettings INTERFACE -fno-semantic-interposition)
target_link_options(nuxmlSettings INTERFACE -Wl,-Bsymbolic-functions)
if(NUXML_WERROR)
    target_compile_options(nuxmlSettings INTERFACE -Werror)
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    if(CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
        # At -O3 this version sees overlapping copies in every `"text" + std::string`.
        target_compile_options(nuxmlSettings INTERFACE -Wno-restrict)
    endif()
    # Unique symbols would pin a library in memory: dlclose could no longer unload the package.
    target_compile_options(nuxmlSettings INTERFACE -fno-gnu-unique)
endif()

# The library's own invariants (common/expects.h). No published header depends on them.
option(NUXML_CHECKS "Check invariants of the library itself" OFF)
if(NUXML_CHECKS OR NUXML_SANITIZE)
    target_compile_definitions(nuxmlSettings INTERFACE NUXML_CHECKS)
endif()

# What makes a fault harder to use. Sanitizers stop at the fault itself.
option(NUXML_HARDEN "Compile and link with the protections of compiler and loader" ON)
if(NUXML_HARDEN AND NOT NUXML_SANITIZE)
    include(CheckCXXCompilerFlag)
    include(CheckLinkerFlag)
    include(CheckPIESupported)
    check_pie_supported(LANGUAGES CXX)

    # Level 3 of the checks in the C library needs a compiler that knows the size of what is
    # allocated.
    set(fortifyLevel 3)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 12)
        set(fortifyLevel 2)
    endif()
    target_compile_options(nuxmlSettings INTERFACE -fstack-protector-strong
        "$<$<CONFIG:Release,RelWithDebInfo,MinSizeRel>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=${fortifyLevel}>")
    target_link_options(nuxmlSettings INTERFACE -Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack)

    check_cxx_compiler_flag(-fcf-protection=full NUXML_HAS_CF_PROTECTION)
    check_linker_flag(CXX -Wl,-z,shstk NUXML_HAS_SHSTK)
    if(NUXML_HAS_CF_PROTECTION AND NUXML_HAS_SHSTK)
        # The linker would mark the files by itself if the compiler's own start-up files were marked,
        # which Debian's are not. They keep a shadow stack intact but lack the landing pads, so only
        # the former is claimed.
        target_compile_options(nuxmlSettings INTERFACE -fcf-protection=full)
        target_link_options(nuxmlSettings INTERFACE -Wl,-z,shstk)
    endif()
endif()

if(NUXML_SANITIZE)
    set(sanitizerFlags -fsanitize=${NUXML_SANITIZE} -fno-omit-frame-pointer)
    if(NUXML_SANITIZE MATCHES "address|undefined")
        list(APPEND sanitizerFlags -fno-sanitize-recover=all)
    endif()
    target_compile_options(nuxmlSettings INTERFACE ${sanitizerFlags})
    target_link_options(nuxmlSettings INTERFACE ${sanitizerFlags})
endif()

if(NUXML_BUILD_FUZZERS)
    # The libraries tell the fuzzer which branches an input reached.
    target_compile_options(nuxmlSettings INTERFACE -fsanitize=fuzzer-no-link)
endif()

# clang links its sanitizer runtime into executables only, so libraries keep open references to it.
if(NOT (NUXML_SANITIZE AND CMAKE_CXX_COMPILER_ID MATCHES "Clang"))
    target_link_options(nuxmlSettings INTERFACE -Wl,--no-undefined)
endif()
