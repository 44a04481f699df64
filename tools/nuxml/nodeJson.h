#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "nuXmlDOM.h"
#include "output.h"

namespace tool {

/// Which JSON a node becomes.
struct JsonForm {
    bool isIndented = false;    ///< lines and two blanks a level
    bool hasNumbers = false;    ///< text that is a number of JSON, true or false stands as such
    bool keepsComments = false; ///< comments and instructions stand in it as well
};

/// Writes elements as JSON, which "nuxml convert" takes back:
///
/// - An element without attributes and child elements is its text, else an object: a member
///   "@name" for each attribute, "name" for each child element, an array where several of a name
///   follow each other, and "#text" for the text.
/// - Where that would lose the order (text beside elements, a name that comes again behind another
///   one), and where comments or instructions are kept, the member "#" is an array of all that is
///   in the element: a text, or an object with one member ("name", "#comment", "?target").
///
/// Needs no stack for the depth of a document.
class JsonWriter {
public:
    JsonWriter(Output& output, JsonForm form) noexcept : output_(output), form_(form) {}

    /// The value of an element, of the text of any other node, or of the member of the document
    /// element where it is the document.
    void write(TNuDOMNode& node);
    /// A text, which is a number where numbers are wanted.
    void writeText(std::u16string_view text);
    /// A document as an object, with what stands in front of its element and behind it where
    /// comments are kept.
    void writeDocument(TNuDOMDocument& document, std::size_t beforeRoot);

private:
    enum class Shape { Text, Object, Ordered };

    /// An element that has been begun.
    struct Open {
        TNuDOMElement* element;
        Shape shape;
        TNuDOMRange<TNuDOMNode>::Iterator next; ///< what has to be written of it
        bool hasMembers = false;
        bool isInArray = false; ///< the next one belongs to the array of the last one
        bool endsArray = false; ///< the last one was the end of its array
        bool isItem = false;    ///< the object around one element is to be closed
    };

    [[nodiscard]] Shape shapeOf(const TNuDOMElement& element) const;
    [[nodiscard]] bool isKept(const TNuDOMNode& node) const noexcept;
    void writeElement(TNuDOMElement& element);
    void begin(TNuDOMElement& element);
    /// Writes what is next in the element that was begun last, or ends it.
    void step();
    void stepMember(Open& open);
    void stepItem(Open& open);
    void writeItem(TNuDOMNode& node);
    void end();
    void beginEntry(bool& hasMembers);
    void writeKey(std::u16string_view prefix, std::u16string_view name);
    void openBracket(char bracket);
    void closeBracket(char bracket, bool hasMembers = true);
    void breakLine();

    Output& output_;
    JsonForm form_;
    std::size_t level_ = 0;
    std::vector<Open> open_;
};

} // namespace tool
