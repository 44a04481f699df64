#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <deque>
#include <optional>
#include <string>
#include <string_view>

#include "nuXmlParser/markup/byteName.h"
#include "nuXmlParser/namespaceNames.h"

/// \file
/// Names of tags that were looked at once and are known when they come again.

namespace nu::markup {

/// A name of an element or attribute.
struct TagName : ByteName {
    TagName(std::string_view text, std::uint64_t hash) noexcept
        : ByteName(text, hash), prefixLength(text.find(':') + 1),
          isDeclaration(isNamespaceDeclaration(text)) {}

    std::size_t prefixLength;      ///< with the colon; 0 without a prefix
    bool isDeclaration;            ///< of a namespace, as an attribute
    std::uint32_t declaredTag = 0; ///< of an element: what is declared for its tags, see its user
    std::uint64_t lastTag = 0;     ///< the number of the last tag that had it as an attribute
    std::uint64_t scope = 0;       ///< where its prefix was last seen declared, see its user
    TagName* followers[3] = {};
};

/// What comes next, guessed from where the document is: names follow each other as they did the
/// last time.
class NameGuess {
public:
    NameGuess() = default;
    NameGuess(const NameGuess&) = delete;
    NameGuess& operator=(const NameGuess&) = delete;

    /// The name that the next element may have; null without a guess.
    [[nodiscard]] TagName* next() const noexcept { return *next_; }
    /// The next element has this name.
    void follow(TagName& name) noexcept { *next_ = &name; }
    /// An element has begun: its children come next.
    void enter(TagName& name) noexcept { next_ = &name.followers[ByteName::Child]; }
    /// An element has ended; null where its name is not known.
    void leave(TagName* name) noexcept {
        unknown_ = nullptr;
        next_ = name == nullptr ? &unknown_ : &name->followers[ByteName::Sibling];
    }

private:
    TagName* unknown_ = nullptr;
    TagName** next_ = &unknown_;
};

/// The names that were met, up to so many that memory stays bounded whatever the document.
class TagNames {
public:
    TagNames() { names_.emplace(); }

    /// The name that reads so, null where it was not met yet.
    [[nodiscard]] TagName* find(std::string_view text) const noexcept {
        if (text.size() > scanBlock) {
            return names_->find(text, names_->hashOf(text));
        }
        const Block block = blockOf(text);
        return names_->findAt(block.data(), text.size(), hashOfShort(block.data(), text.size()));
    }
    /// The same for `size` bytes, behind whose beginning ByteName::longestGuess can be read.
    [[nodiscard]] TagName* findAt(const char* start, std::size_t size) const noexcept {
        return size <= scanBlock ? names_->findAt(start, size, hashOfShort(start, size))
                                 : find({start, size});
    }
    /// Meets one. Whether it is a name is for the caller to know.
    TagName& add(std::string_view text) {
        size_ += text.size() + sizeof(TagName);
        return names_->add(texts_.emplace_back(text), hashOf(text));
    }
    /// Whether there are more than are worth their memory, which is at least `least` bytes.
    [[nodiscard]] bool areTooMany(std::size_t least) const noexcept {
        constexpr std::size_t enough = std::size_t{1024} * 1024;
        return size_ > enough && size_ > least;
    }
    /// Forgets all of them.
    void clear() {
        names_.emplace();
        texts_.clear();
        size_ = 0;
    }

private:
    using Block = std::array<char, scanBlock>;

    /// A short name where the bytes behind it can be read.
    static Block blockOf(std::string_view text) noexcept {
        Block block{};
        text.copy(block.data(), block.size());
        return block;
    }
    /// Of bytes from a block that can be read as a whole: those behind the name do not count.
    [[nodiscard]] std::uint64_t hashOfShort(const char* start, std::size_t size) const noexcept {
        std::array<std::uint64_t, 2> halves;
        std::memcpy(halves.data(), start, sizeof halves);
        constexpr std::size_t half = sizeof(std::uint64_t);
        const auto bits = [](std::size_t bytes) {
            return bytes >= half ? ~std::uint64_t{0} : (std::uint64_t{1} << 8 * bytes) - 1;
        };
        halves[0] &= bits(size);
        halves[1] &= bits(size > half ? size - half : 0);
        return mixHash(keys_, mixHash(keys_, keys_.start ^ size ^ halves[0]) ^ halves[1]);
    }
    [[nodiscard]] std::uint64_t hashOf(std::string_view text) const noexcept {
        if (text.size() > scanBlock) {
            return names_->hashOf(text);
        }
        return hashOfShort(blockOf(text).data(), text.size());
    }

    const HashKeys& keys_ = hashKeys();
    std::optional<ByteNames<TagName>> names_;
    std::deque<std::string> texts_; ///< which stay where they are
    std::size_t size_ = 0;
};

} // namespace nu::markup
