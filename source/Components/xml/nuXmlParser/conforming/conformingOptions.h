#pragma once

#include <cstdint>
#include <string>

#include "nuXmlParser/limits.h"

/// \file
/// How a document is read as the XML standard means it.

/// Which white space is content, where nothing else stands between two tags, comments, instructions
/// or CDATA sections.
enum TNuConformingWhiteSpace : std::uint8_t {
    /// None, as the reader has it by itself: only xml:space="preserve" keeps it.
    cwReader,
    /// What has no line break in it: the blank between two words in tags of their own stays,
    /// indentation goes. xml:space="preserve" keeps all.
    cwInline,
    /// All, as XML 1.0 demands.
    cwAll,
};

/// What comes of a fault in the document.
enum TNuConformingFault : std::uint8_t {
    /// The parse ends with it.
    cfStop,
    /// It is reported as an error, and from there on everything goes on to the reader unchanged and
    /// unchecked, so that what the reader forgives is read all the same.
    cfPassOn,
};

/// The options of the conforming stage.
///
/// The stage stands in front of the reader and turns any document that is well-formed by XML 1.0
/// (fifth edition) and Namespaces in XML 1.0 into one that the reader reads as it is meant, and
/// refuses what is not. The internal subset of a document type is read: entities are expanded,
/// attributes defaulted and normalised. Nothing outside the document is ever fetched.
struct TNuConformingOptions {
    TNuConformingWhiteSpace whiteSpace = cwAll; ///< which white space counts
    TNuConformingFault onFault = cfStop; ///< what becomes of a document that is not well-formed
    /// Whether colons in names mean namespaces, whose rules are then checked.
    bool namespaces = true;
    /// Keeps every line where it was. Line breaks that cannot stay in a tag go to the next place
    /// where the reader steps over them; what comes out may then be no XML for anybody else.
    /// Without it the result is well-formed, the stage changes nothing in it, and lines are not
    /// those of the source.
    bool keepLines = true;
    /// Whether the XML declaration goes on with the name of an encoding that it came with, although
    /// the text is UTF-8 by then: for who wants to save in that encoding again. Otherwise it names
    /// UTF-8 wherever the text came in another encoding.
    bool keepEncodingName = false;
    /// The encoding, where it is known from outside, as from the header of a message; then a
    /// declaration in the document does not count. Empty: by mark and declaration.
    std::string encoding;
    /// Entities may expand to no more than so many times the bytes of the document, ...
    std::uint32_t amplification = 100;
    /// ... which is looked at from so many bytes of document and expanded text together on.
    std::int64_t amplificationFrom = 8 * 1024 * 1024;
    /// What the document may ask for; more is a fault. This is for who has the stage alone: a
    /// reader behind it looks at limits of its own.
    TNuSaxLimits limits = {};
};
