#pragma once

#include <cstdint>
#include <string>

/// What ends the lines of a document: the first line break of it decides.
enum TNuLineEnd : std::uint8_t {
    leNone, ///< there is only one line
    leLf,
    leCrLf,
    leCr,
};

/// What the conforming stage found out about the form of a document, as far as it has been read.
struct TNuSourceForm {
    /// The encoding that the bytes were read in, as a document would name it: "UTF-8",
    /// "windows-1251"; letter case as it was declared.
    std::string encoding;
    /// The encoding that the XML declaration names; empty where there is none.
    std::string declaredEncoding;
    /// Whether a byte-order mark stood in front.
    bool hasMark = false;
    /// The whole document type declaration as it stood, in UTF-8, from "<!DOCTYPE" to ">"; empty
    /// where there is none. Not kept beyond 1 MiB: then it ends before the ">".
    std::string documentType;
    /// Whether the document type has an internal subset, even an empty one.
    bool hasInternalSubset = false;
    /// What the first line ended with.
    TNuLineEnd lineEnd = leNone;
    /// Whether anything had to be changed, the encoding and a mark aside.
    bool isChanged = false;
};
