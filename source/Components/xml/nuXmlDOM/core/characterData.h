#pragma once

#include <cstddef>
#include <string_view>

#include "nuXmlDOM/core/node.h"
#include "nuXmlDOM/storage/storedText.h"

/// \file
/// Texts, CDATA sections, comments and processing instructions.

/// A node of characters, which has no children. Lengths, offsets and counts are in UTF-16 code
/// units; out of range values are treated as each operation says.
class NUXML_API TNuDOMCharacterData : public TNuDOMChildNode {
public:
    [[nodiscard]] NuXmlString get_nodeName() const override;
    [[nodiscard]] NuXmlString get_nodeValue() const override;

    /// The same as get_nodeValue: the text that is meant.
    [[nodiscard]] NuXmlString get_data() const { return get_nodeValue(); }
    /// The same as set_nodeValue, with what that throws.
    void set_data(std::u16string_view data) { set_nodeValue(data); }
    /// The same in UTF-8.
    void set_data(const TNuUtf8Text& data) { set_data(data.view()); }
    /// The length of get_data.
    [[nodiscard]] virtual std::size_t get_length() const = 0;
    /// The `count` characters from `offset` on, fewer at the end; kinds count the offset each in
    /// its own way.
    [[nodiscard]] virtual NuXmlString substringData(std::ptrdiff_t offset,
                                                    std::ptrdiff_t count) = 0;
    /// Adds text behind the data.
    virtual void appendData(std::u16string_view text) = 0;
    /// Puts text before the character at `offset`.
    virtual void insertData(std::ptrdiff_t offset, std::u16string_view text) = 0;
    /// Takes `count` characters from `offset` on out, fewer at the end.
    virtual void deleteData(std::ptrdiff_t offset, std::ptrdiff_t count) = 0;
    /// Puts text in the place of `count` characters from `offset` on.
    virtual void replaceData(std::ptrdiff_t offset, std::ptrdiff_t count,
                             std::u16string_view text) = 0;

    /// Appends characters as a parser delivers them: without a check, and not escaped again.
    void _LoadFromBuffer(const NuXmlChar* characters, std::size_t count);
    /// Appends the rest of a stream of UTF-16 characters in the same way.
    void _LoadFromStream(host::TStream& stream);

protected:
    using TNuDOMChildNode::TNuDOMChildNode;
    ~TNuDOMCharacterData() = default;

    /// Puts `text` in place of the stored text.
    void store(std::u16string_view text);
    /// Loading has appended to the stored text.
    virtual void wasExtended() noexcept {}
    /// \cond internal
    [[nodiscard]] nu::StoredText& stored() noexcept { return text_; }
    [[nodiscard]] const nu::StoredText& stored() const noexcept { return text_; }
    /// The stored text in a form in which places are found without counting.
    [[nodiscard]] const nu::StoredText& indexed() const;
    /// \endcond

private:
    friend class nu::NodeText;

    /// Mutable because being looked at changes its form.
    mutable nu::StoredText text_;
};

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

/// A CDATA section: a text that is kept and written as it is.
class NUXML_API TNuDOMCDATA final : public TNuDOMText {
public:
    /// What stands for this kind of node in TNuDOMDocument::_CreateNode, and what messages call it.
    static const TNuDOMNodeClass Class;
    /// The kind as a constant, for templates over kinds of nodes.
    static constexpr host::DOMNodeType Type = host::CDATA_SECTION_NODE;

    [[nodiscard]] NuXmlString get_nodeName() const override;
    /// Throws ENuDomInvalidCharacter when "]]>" or "<![" stands at an offset that 3 divides; the
    /// node is empty then.
    /// Deliberate: elsewhere they are not found; the check looks at three characters at a time.
    using TNuDOMNode::set_nodeValue;
    void set_nodeValue(std::u16string_view value) override;
    /// Checks the whole as set_nodeValue does.
    void appendData(std::u16string_view text) override;

private:
    using TNuDOMText::TNuDOMText;
    ~TNuDOMCDATA() = default;
};

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

/// A processing instruction: a target, which is the node's name, and data.
class NUXML_API TNuDOMProcessingInstruction final : public TNuDOMChildNode {
public:
    /// What stands for this kind of node in TNuDOMDocument::_CreateNode, and what messages call it.
    static const TNuDOMNodeClass Class;
    /// The kind as a constant, for templates over kinds of nodes.
    static constexpr host::DOMNodeType Type = host::PROCESSING_INSTRUCTION_NODE;

    [[nodiscard]] NuXmlString get_nodeValue() const override;
    using TNuDOMNode::set_nodeValue;
    void set_nodeValue(std::u16string_view value) override;

    /// What stands behind "<?", which is also the name of the node.
    [[nodiscard]] NuXmlString get_target() const { return get_nodeName(); }
    /// What stands behind the target; nothing in it is escaped or resolved.
    [[nodiscard]] NuXmlString get_data() const { return get_nodeValue(); }
    /// Replaces the data as they are; "?>" in them is not looked for.
    void set_data(std::u16string_view data) { set_nodeValue(data); }
    /// The same in UTF-8.
    void set_data(const TNuUtf8Text& data) { set_data(data.view()); }
    /// The first quoted text behind the target's own name in the data.
    /// Deliberate: `name` is not consulted; the search is for the target.
    [[nodiscard]] NuXmlString getAttribute(std::u16string_view name) const;
    /// Sets a pair name="value" in the data; what follows the last pair is dropped, and each pair
    /// ends with a blank.
    void setAttribute(std::u16string_view name, std::u16string_view value);

private:
    using TNuDOMChildNode::TNuDOMChildNode;
    ~TNuDOMProcessingInstruction() = default;
    friend class nu::NodeText;

    nu::StoredText text_;
};
