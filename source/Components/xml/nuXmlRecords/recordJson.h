#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "nuXmlRecords/recordOutline.h"

namespace nu {

/// Writes records as JSON, each on a line of its own.
///
/// An element without attributes and child elements is a string, its text. Any other is an object:
/// attributes are members with "@" in front, child elements members under their names, in an array
/// where there are several of one name, and text beside them is the member "#text". Names stand as
/// they are written, prefix and all; declarations of namespaces, comments and instructions are left
/// out, and white space alone counts as text only where there are no child elements.
class RecordJson {
public:
    /// Appends a line, without its line break.
    void append(std::string& target, const RecordOutline& outline);

private:
    struct Frame {
        RecordOutline::Index nextName;
        RecordOutline::Index nextSame;
        bool isInArray;
        bool hasMembers;
    };

    void open(std::string& target, RecordOutline::Index index);
    void continueObject(std::string& target);

    const RecordOutline* outline_ = nullptr;
    std::vector<Frame> frames_; ///< the objects that are open
};

/// Appends the characters of XML text inside of a string of JSON.
/// \param isCData it holds no references
void appendJsonText(std::string& target, std::string_view text, bool isCData);

} // namespace nu
