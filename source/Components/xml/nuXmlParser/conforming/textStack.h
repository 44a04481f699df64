#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "common/expects.h"
#include "nuXmlParser/conforming/conformingFaults.h"
#include "nuXmlParser/conforming/entities.h"
#include "nuXmlParser/conforming/openElements.h"
#include "nuXmlParser/conforming/outputText.h"
#include "nuXmlParser/conforming/sourceText.h"

namespace nu {

/// Text of the document that does not go out: its lines, and its beginning.
class DroppedText {
public:
    void add(std::string_view text) {
        places_.moveOver(text);
        if (start.size() < longestStart) {
            start.append(text.substr(0, longestStart - start.size()));
        }
    }
    [[nodiscard]] std::int64_t lineBreaks() const noexcept { return places_.place().line - 1; }

    std::string start;

private:
    static constexpr std::size_t longestStart = 1024 * 1024;

    PlaceCounter places_;
};

/// What the loop reads: the text of the document and, above it, the texts of the entities that are
/// being read. What it passes goes out unless it is changed.
///
/// Text of the document moves when more of it shows: only `place` is kept.
class TextStack {
public:
    TextStack(SourceText& source, OutputText& output, OpenElements& elements, bool keepsLines)
        : place(source.begin()), end(source.end()), source_(source), output_(output),
          elements_(elements), keepsLines_(keepsLines), notWritten_(place) {}

    const char* place; ///< what comes next
    const char* end;   ///< where the text at hand ends

    [[nodiscard]] bool isInEntity() const noexcept { return !frames_.empty(); }
    /// Shows more of the text from `place` on; false at its end.
    bool showMore();
    /// Shows more of the document's text where that moves none, and tells of no fault.
    bool showAhead() {
        const bool isMore = !isInEntity() && source_.showAhead();
        end = isMore ? source_.end() : end;
        return isMore;
    }
    /// The first byte from `place` + `offset` on for which `isStop` says so, shown if need be; null
    /// when the text ends before.
    template <class IsStop> const char* findFrom(std::size_t offset, IsStop&& isStop) {
        for (;;) {
            const char* at = place + offset;
            while (at != end && !isStop(*at)) {
                ++at;
            }
            if (at != end) {
                return at;
            }
            offset = static_cast<std::size_t>(at - place);
            if (!showMore()) {
                return nullptr;
            }
        }
    }
    /// Whether the text at `place` begins with `text`, shown if need be.
    bool startsWith(std::string_view text);

    // Output

    /// Writes `text` in place of what stands between two places at or behind everything that was
    /// changed before.
    void change(const char* from, const char* to, std::string_view text) {
        if (dropped_ != nullptr) {
            return;
        }
        expects(notWritten_ <= from && from <= to);
        isChanged_ = true;
        output_.append(notWritten_, from);
        output_.append(text);
        notWritten_ = to;
    }
    void insert(const char* at, std::string_view text) { change(at, at, text); }
    /// Line breaks of the document that cannot stay where they are go to the next place for them.
    void keepBreaks(std::int64_t count) noexcept {
        if (keepsLines_ && !isInEntity()) {
            keptBreaks_ += count;
        }
    }
    /// A place where the reader steps over line breaks: those that are kept go there.
    void putBreaks(const char* at) {
        if (keptBreaks_ > 0) {
            insertBreaks(at);
        }
    }
    [[nodiscard]] bool hasBreaks() const noexcept { return keptBreaks_ > 0; }
    [[nodiscard]] bool keepsLines() const noexcept { return keepsLines_; }
    /// Everything up to a place behind what was written went out in another way.
    void passTo(const char* newPlace) noexcept { place = notWritten_ = newPlace; }
    /// Writes everything up to `place`.
    void write();
    /// From `place` on nothing goes out, and changes count for nothing, until endDropping; text of
    /// the document is told to `dropped`.
    void beginDropping(DroppedText& dropped);
    void endDropping();
    /// Whether anything was changed.
    [[nodiscard]] bool isChanged() const noexcept { return isChanged_; }
    /// What was not written yet of the document's text.
    [[nodiscard]] const char* notWritten() const noexcept { return notWritten_; }

    // Entities

    /// Goes on with the text of an entity, to come back to `behindReference`. The reference is
    /// replaced by it.
    void enter(Entity& entity, const char* behindReference);
    /// Goes back to the text in which the reference to the innermost entity stands.
    void leave();
    /// How many elements were open when the innermost text was entered.
    [[nodiscard]] std::size_t baseDepth() const noexcept {
        return frames_.empty() ? 0 : frames_.back().depth;
    }
    /// Gives up all entities, back to the document behind the outermost reference.
    void leaveAll();

    // Places and faults

    [[nodiscard]] const SourceText& source() const noexcept { return source_; }

    /// The number of bytes of the document's text up to a place, or to the outermost reference.
    [[nodiscard]] std::int64_t offsetOf(const char* at) const noexcept {
        return source_.offsetOf(isInEntity() ? frames_.front().reference : at);
    }
    /// What is wrong at a place: in the document there, in an entity at the outermost reference,
    /// the entity named.
    [[noreturn]] void fail(std::u16string_view message, const char* at) const;
    [[noreturn]] void fail(std::u16string_view message, std::string_view text,
                           const char* at) const;
    [[noreturn]] void failWith(const std::u16string& message, const char* at) const;
    /// The entity that is being read is itself what is wrong.
    [[noreturn]] void failEntity(std::u16string_view message) const;

private:
    struct Frame {
        Entity* entity;
        std::size_t depth;
        const char* reference; ///< in the text below
        const char* place;     ///< where the text below goes on
        const char* end;
    };

    void insertBreaks(const char* at);

    SourceText& source_;
    OutputText& output_;
    OpenElements& elements_;
    bool keepsLines_;
    bool isChanged_ = false;
    const char* notWritten_; ///< everything before it is written or changed
    std::int64_t keptBreaks_ = 0;
    DroppedText* dropped_ = nullptr;
    std::vector<Frame> frames_;
};

/// The line breaks in a text: LF, CR LF and CR.
[[nodiscard]] std::int64_t countBreaks(std::string_view text) noexcept;

} // namespace nu
