#pragma once

#include <cstddef>
#include <string_view>

#include "nuXmlDOM/core/characterData.h"

/// A text between tags. The value that operations take and give is the text that is meant; what is
/// kept and written is its escaped form ("&amp;" for "&").
class NUXML_API TNuDOMText : public TNuDOMCharacterData {
public:
    /// What stands for this kind of node in TNuDOMDocument::_CreateNode, and what messages call it.
    static const TNuDOMNodeClass Class;
    /// The kind as a constant, for templates over kinds of nodes. That of sections differs.
    static constexpr host::DOMNodeType Type = host::TEXT_NODE;

    using TNuDOMNode::set_nodeValue;
    void set_nodeValue(std::u16string_view value) override;

    /// The length of what is meant: "&amp;amp;" counts as one.
    [[nodiscard]] std::size_t get_length() const override;
    /// Deliberate: `offset` counts from 1, and 0 is taken as 1.
    [[nodiscard]] NuXmlString substringData(std::ptrdiff_t offset, std::ptrdiff_t count) override;
    /// Adds text behind the data; neighbours are not looked at.
    void appendData(std::u16string_view text) override;
    /// Puts text behind the first `offset` characters; one below 0 is taken as 0, one beyond the
    /// data as their end.
    void insertData(std::ptrdiff_t offset, std::u16string_view text) override;
    /// Takes out up to `count` characters behind the first `offset`; places outside of the data do
    /// not count.
    void deleteData(std::ptrdiff_t offset, std::ptrdiff_t count) override;
    /// Puts text in the place of up to `count` characters behind the first `offset`.
    void replaceData(std::ptrdiff_t offset, std::ptrdiff_t count,
                     std::u16string_view text) override;
    /// Cuts the text at `offset`; what follows becomes a new text node right behind this one, or
    /// outside of the tree when this one is.
    NuRef<TNuDOMText> splitText(std::ptrdiff_t offset);

protected:
    using TNuDOMCharacterData::TNuDOMCharacterData;
    ~TNuDOMText() = default;

private:
    [[nodiscard]] NUXML_LOCAL bool mayHaveReferences();
};
