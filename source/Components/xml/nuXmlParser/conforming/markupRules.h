#pragma once

#include <cstdint>
#include <string_view>

#include "nuXmlParser/conforming/limitRules.h"
#include "nuXmlParser/conforming/textStack.h"

namespace nu {

/// How the reader that gets the text reads what is not a tag.
enum class ReaderForm : std::uint8_t {
    /// By its own rules: it drops control characters in comments and instructions, and white space
    /// between tags.
    ByItself,
    /// Comments and instructions as they stand, and white space as it was told.
    Told,
};

/// Comments, processing instructions and CDATA sections: long ones a piece at a time.
class MarkupRules {
public:
    MarkupRules(TextStack& texts, const LimitRules& limits, ReaderForm reader, bool hasNamespaces)
        : texts_(texts), limits_(limits), reader_(reader), hasNamespaces_(hasNamespaces) {}

    /// What the text goes on with.
    enum class Inside : std::uint8_t { Nothing, Comment, Instruction, CData };

    [[nodiscard]] Inside inside() const noexcept { return inside_; }
    /// Behind "<!--".
    void beginComment() noexcept { inside_ = Inside::Comment; }
    /// At the "<?" of an instruction, whose target is passed.
    void beginInstruction();
    /// Behind "<![CDATA[".
    void beginCData() noexcept { inside_ = Inside::CData; }
    /// Passes as much as is at hand, or ends what was begun.
    void passPiece();

private:
    void passComment();
    void passInstruction();
    void passCData();
    bool passDash();
    void passTo(const char* end);
    void showMoreOrFail(std::u16string_view message);

    TextStack& texts_;
    const LimitRules& limits_;
    ReaderForm reader_;
    bool hasNamespaces_;
    Inside inside_ = Inside::Nothing;
};

} // namespace nu
