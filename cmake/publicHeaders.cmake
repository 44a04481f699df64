# What applications include, and how it gets to them. Also run as a script, when the package is installed.
#
# In the repository an include is written from one of the two roots ("host/runtime/stream.h", "nuXmlDOM/core/node.h"),
# and a compiler looks for it in every include folder of the project that uses the library. So that no folder
# "host" or "common" of that project gets in between, the headers that applications see name each other relative
# to themselves.

cmake_policy(VERSION 3.25)

# These, and what they include.
set(nuPublicHeaders
    nuXmlParser.h nuXmlSax.h nuXmlDOM.h nuXmlFormat.h nuObj2Xml.h nuXmlRecords.h
    host/com/errorInfo.h host/com/streamAdapter.h
    host/runtime/csvDataSet.h host/runtime/fileReplacement.h host/runtime/fileStream.h
    host/runtime/rangeDataSet.h host/runtime/rowSet.h host/runtime/unicode.h host/runtime/whiteSpace.h)

# nuStagePublicHeaders(<repository> <folder> <variable>)
#
# Writes all public headers below a folder; files that are right already are left alone. The variable gets the
# headers of the repository that they are made from.
function(nuStagePublicHeaders repository folder variable)
    set(names ${nuPublicHeaders})
    set(sources)
    while(names)
        list(POP_FRONT names name)
        set(source ${repository}/source/Components/xml/${name})
        if(NOT EXISTS ${source})
            set(source ${repository}/${name})
        endif()
        if(source IN_LIST sources)
            continue()
        endif()
        list(APPEND sources ${source})

        # 1. What it includes, seen from its own place.
        file(READ ${source} text)
        cmake_path(GET name PARENT_PATH place)
        string(REGEX MATCHALL "\n#include \"[^\"]+\"" includes "${text}")
        foreach(include IN LISTS includes)
            string(REGEX REPLACE "\n#include \"(.+)\"" "\\1" included "${include}")
            file(RELATIVE_PATH relative "/${place}" "/${included}")
            string(REPLACE "${include}" "\n#include \"${relative}\"" text "${text}")
            list(APPEND names ${included})
        endforeach()

        # 2. The header as applications get it.
        set(staged ${folder}/${name})
        set(former)
        if(EXISTS ${staged})
            file(READ ${staged} former)
        endif()
        if(NOT text STREQUAL former)
            file(WRITE ${staged} "${text}")
        endif()
    endwhile()
    set(${variable} ${sources} PARENT_SCOPE)
endfunction()
