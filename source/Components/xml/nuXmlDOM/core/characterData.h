#pragma once

#include <cstddef>
#include <string_view>

#include "nuXmlDOM/core/node.h"
#include "nuXmlDOM/storage/storedText.h"

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
