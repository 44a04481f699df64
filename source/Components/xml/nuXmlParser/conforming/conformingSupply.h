#pragma once

#include <cstddef>
#include <exception>
#include <functional>
#include <optional>
#include <string_view>

#include "nuXmlParser/conforming/conformingOptions.h"
#include "nuXmlParser/conforming/normaliser.h"
#include "nuXmlParser/conforming/outputText.h"
#include "nuXmlParser/conforming/sourceForm.h"
#include "nuXmlParser/conforming/sourceText.h"
#include "nuXmlParser/conforming/xmlFault.h"
#include "nuXmlParser/textSupply.h"

namespace nu {

/// The conforming stage for a reader that passes plain content by itself: the stage makes no more
/// than what is not plain, a step at a time, and is told of the elements that went past it. Where
/// little is plain it makes a block at once.
class ConformingSupply final : public TextSupply {
public:
    /// \param text in memory, where it stays unchanged
    ConformingSupply(std::string_view text, const TNuConformingOptions& options);

    /// To be called first. False, and this object of no use, where the text is not UTF-8. Throws
    /// ENuXmlFault.
    [[nodiscard]] bool open();
    /// With cfPassOn, who is told of the fault.
    std::function<void(const ENuXmlFault&)> onPassedFault;
    /// What is known of the source when all is read.
    [[nodiscard]] const TNuSourceForm& form();

    [[nodiscard]] std::string_view next() override;
    [[nodiscard]] bool promisesMore() const noexcept override;
    [[nodiscard]] std::string_view textFrom(NuXmlChar last) const noexcept override;
    void pass(const char* end) override;

    // For who passes plain content, and has checked it

    /// More of the text from a place on than showed; empty where enough shows, or nothing more can.
    [[nodiscard]] std::string_view moreFrom(const char* place);
    /// The same where what begins there does not end in what shows, however much that is.
    [[nodiscard]] std::string_view muchMoreFrom(const char* place);
    /// What the document may ask for, and the elements that are told: how many there are.
    [[nodiscard]] const LimitRules& limits() const noexcept { return normaliser_->limits(); }
    [[nodiscard]] std::size_t depth() const noexcept { return normaliser_->depth(); }
    /// What is declared for the attributes of an element; null without anything.
    [[nodiscard]] ElementDeclaration* declarationOf(std::string_view element) {
        return normaliser_->tags().memory().declarationOf(element);
    }
    /// Whether defaults of so many bytes may be added to the tag at `less`.
    [[nodiscard]] bool allowsDefaults(std::size_t cost, const char* less) {
        return normaliser_->entities().mayBeSpent(cost, less);
    }
    /// They were added, and may be.
    void addDefaults(std::size_t cost, const char* less) {
        normaliser_->entities().spend(cost, less);
    }
    /// The name of the innermost element of those that are told.
    [[nodiscard]] std::string_view innermost() const noexcept { return normaliser_->innermost(); }
    /// An element that was begun stays open; its start tag stands at `less`.
    void openElement(std::string_view name, const char* less) {
        normaliser_->tags().openPassed(name, less);
    }
    /// The element that was opened last binds a prefix.
    void bind(std::string_view prefix, std::string_view uri) {
        normaliser_->tags().bindPassed(prefix, uri);
    }
    /// The innermost element has ended.
    void closeElement() noexcept { normaliser_->tags().closePassed(); }

private:
    static constexpr std::ptrdiff_t mostGain = 2048;

    [[nodiscard]] bool run();
    void passOn(const ENuXmlFault& fault);
    [[nodiscard]] std::string_view showFrom(const char* place, std::ptrdiff_t enough);

    TNuConformingOptions options_;
    SourceText source_;
    OutputText output_;
    TNuSourceForm form_;
    std::optional<Normaliser> normaliser_;
    std::size_t given_ = 0; ///< of the output
    /// Bytes that were passed, less what they would have to be for steps between them to pay.
    std::ptrdiff_t gain_ = mostGain;
    bool isLessGiven_ = false; ///< the "<" of the markup that comes next
    bool hasEnded_ = false;
    std::exception_ptr failure_; ///< thrown when everything before it was given
};

} // namespace nu
