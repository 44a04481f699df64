#pragma once

#include <cstddef>
#include <string_view>

#include "nuXmlDOM/core/characterData.h"

/// A comment.
///
/// Deliberate: the operations on parts follow the stream that the text once was, with a position
/// that each of them moves; see each. Applications rely on the results.
class NUXML_API TNuDOMComment final : public TNuDOMCharacterData {
public:
    /// What stands for this kind of node in TNuDOMDocument::_CreateNode, and what messages call it.
    static const TNuDOMNodeClass Class;
    /// The kind as a constant, for templates over kinds of nodes.
    static constexpr host::DOMNodeType Type = host::COMMENT_NODE;

    [[nodiscard]] NuXmlString get_nodeName() const override;
    /// Throws ENuDomInvalidCharacter when "--" stands at an even offset; the comment is empty then.
    /// Deliberate: elsewhere it is not found; the check looks at two characters at a time.
    using TNuDOMNode::set_nodeValue;
    void set_nodeValue(std::u16string_view value) override;

    /// The length of get_data; the position stays.
    [[nodiscard]] std::size_t get_length() const override;
    /// The `count` characters from `offset` on, fewer at the end of the data; the position is
    /// behind them then.
    [[nodiscard]] NuXmlString substringData(std::ptrdiff_t offset, std::ptrdiff_t count) override;
    /// Writes `text` at the position: behind the data after they were set, else where the last
    /// operation stopped.
    void appendData(std::u16string_view text) override;
    /// Deliberate: with an offset above 0 the text lands one place early and the last character
    /// goes (insertData(2, "X") makes "aXbcde" of "abcdef"). Throws host::EReadError beyond the
    /// data.
    void insertData(std::ptrdiff_t offset, std::u16string_view text) override;
    /// Deliberate: data that would lose exactly their end get all they held once more behind it.
    /// Throws host::EReadError beyond the data.
    void deleteData(std::ptrdiff_t offset, std::ptrdiff_t count) override;
    /// Deliberate: writes over as many characters as `text` has, whatever `count` says.
    void replaceData(std::ptrdiff_t offset, std::ptrdiff_t count,
                     std::u16string_view text) override;

private:
    using TNuDOMCharacterData::TNuDOMCharacterData;
    ~TNuDOMComment() = default;

    void wasExtended() noexcept override { position_ = cEnd; }
    NUXML_LOCAL void writeAt(std::size_t position, std::u16string_view text);

    /// In characters; cEnd stands for the end of the data, wherever that is.
    std::size_t position_ = cEnd;
    static constexpr std::size_t cEnd = static_cast<std::size_t>(-1);
};
