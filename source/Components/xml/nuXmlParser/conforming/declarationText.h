#pragma once

#include <string>
#include <string_view>

#include "nuXmlParser/conforming/textStack.h"

namespace nu {

/// Steps through the text of a declaration in an internal subset, or of the head of a document
/// type, which is at hand as a whole. What does not fit is a fault.
class DeclarationText {
public:
    /// \param what the declaration as a message names it
    DeclarationText(const TextStack& texts, const char* start, const char* end,
                    std::string_view what) noexcept
        : place(start), texts_(texts), end_(end), what_(what) {}

    const char* place;

    [[nodiscard]] char at() const noexcept { return place == end_ ? '\0' : *place; }
    [[nodiscard]] bool isAt(std::string_view text) const noexcept {
        return std::string_view(place, end_).starts_with(text);
    }
    /// White space; whether there was any.
    bool space() noexcept;
    void needSpace();
    /// Takes the text if it stands here.
    bool take(std::string_view text) noexcept;
    void need(std::string_view text);
    [[nodiscard]] std::string_view needName();
    [[nodiscard]] std::string_view needToken();
    /// What stands between quotes, as it stands.
    [[nodiscard]] std::string_view needLiteral();
    [[nodiscard]] std::string_view needPublicId();
    /// The end of the declaration, white space before it allowed.
    void needEnd();

    [[noreturn]] void fail() const;
    [[noreturn]] void fail(std::u16string_view message, std::string_view text = {}) const;

private:
    void refuseParameterEntity() const;

    const TextStack& texts_;
    const char* end_;
    std::string_view what_;
};

/// SYSTEM or PUBLIC with their literals.
struct ExternalId {
    std::string_view publicId;
    std::string_view systemId;
    const char* start = nullptr; ///< null where there is none

    /// \param isSystemNeeded false for a notation, whose public identifier may stand alone
    static ExternalId read(DeclarationText& text, bool isSystemNeeded);
};

} // namespace nu
