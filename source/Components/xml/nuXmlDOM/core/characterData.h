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

    [[nodiscard]] NuXmlString get_data() const { return get_nodeValue(); }
    void set_data(std::u16string_view data) { set_nodeValue(data); }
    void set_data(const TNuUtf8Text& data) { set_data(data.view()); }
    [[nodiscard]] virtual std::size_t get_length() const = 0;
    [[nodiscard]] virtual NuXmlString substringData(std::ptrdiff_t offset,
                                                    std::ptrdiff_t count) = 0;
    virtual void appendData(std::u16string_view text) = 0;
    virtual void insertData(std::ptrdiff_t offset, std::u16string_view text) = 0;
    virtual void deleteData(std::ptrdiff_t offset, std::ptrdiff_t count) = 0;
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
    [[nodiscard]] nu::StoredText& stored() noexcept { return text_; }
    [[nodiscard]] const nu::StoredText& stored() const noexcept { return text_; }
    /// The stored text in a form in which places are found without counting.
    [[nodiscard]] const nu::StoredText& indexed() const;

private:
    friend class nu::NodeAccess;

    /// Mutable because being looked at changes its form.
    mutable nu::StoredText text_;
};

/// A text between tags. The value that operations take and give is the text that is meant; what is
/// kept and written is its escaped form ("&amp;" for "&").
class NUXML_API TNuDOMText : public TNuDOMCharacterData {
public:
    static const TNuDOMNodeClass Class;
    static constexpr host::DOMNodeType Type = host::TEXT_NODE;

    using TNuDOMNode::set_nodeValue;
    void set_nodeValue(std::u16string_view value) override;

    [[nodiscard]] std::size_t get_length() const override;
    /// Deliberate: `offset` counts from 1, and 0 is taken as 1.
    [[nodiscard]] NuXmlString substringData(std::ptrdiff_t offset, std::ptrdiff_t count) override;
    void appendData(std::u16string_view text) override;
    void insertData(std::ptrdiff_t offset, std::u16string_view text) override;
    void deleteData(std::ptrdiff_t offset, std::ptrdiff_t count) override;
    void replaceData(std::ptrdiff_t offset, std::ptrdiff_t count,
                     std::u16string_view text) override;
    /// Cuts the text at `offset`; what follows becomes a new text node right behind this one, or
    /// outside of the tree when this one is.
    NuRef<TNuDOMText> splitText(std::ptrdiff_t offset);

protected:
    using TNuDOMCharacterData::TNuDOMCharacterData;
    ~TNuDOMText() = default;
    friend class nu::NodeAccess;
};

/// A CDATA section: a text that is kept and written as it is.
class NUXML_API TNuDOMCDATA final : public TNuDOMText {
public:
    static const TNuDOMNodeClass Class;
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
    friend class nu::NodeAccess;
};

/// A comment.
///
/// Deliberate: the operations on parts follow the stream that the text once was, with a position
/// that each of them moves; see each. Applications rely on the results.
class NUXML_API TNuDOMComment final : public TNuDOMCharacterData {
public:
    static const TNuDOMNodeClass Class;
    static constexpr host::DOMNodeType Type = host::COMMENT_NODE;

    [[nodiscard]] NuXmlString get_nodeName() const override;
    /// Throws ENuDomInvalidCharacter when "--" stands at an even offset; the comment is empty then.
    /// Deliberate: elsewhere it is not found; the check looks at two characters at a time.
    using TNuDOMNode::set_nodeValue;
    void set_nodeValue(std::u16string_view value) override;

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
    friend class nu::NodeAccess;

    void wasExtended() noexcept override { position_ = cEnd; }
    void writeAt(std::size_t position, std::u16string_view text);

    /// In characters; cEnd stands for the end of the data, wherever that is.
    std::size_t position_ = cEnd;
    static constexpr std::size_t cEnd = static_cast<std::size_t>(-1);
};

/// A processing instruction: a target, which is the node's name, and data.
class NUXML_API TNuDOMProcessingInstruction final : public TNuDOMChildNode {
public:
    static const TNuDOMNodeClass Class;
    static constexpr host::DOMNodeType Type = host::PROCESSING_INSTRUCTION_NODE;

    [[nodiscard]] NuXmlString get_nodeValue() const override;
    using TNuDOMNode::set_nodeValue;
    void set_nodeValue(std::u16string_view value) override;

    [[nodiscard]] NuXmlString get_target() const { return get_nodeName(); }
    [[nodiscard]] NuXmlString get_data() const { return get_nodeValue(); }
    void set_data(std::u16string_view data) { set_nodeValue(data); }
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
    friend class nu::NodeAccess;

    nu::StoredText text_;
};
