#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <string_view>

#include "common/encoding.h"
#include "common/transcoder.h"
#include "host/runtime/stream.h"
#include "nuXmlParser/conforming/byteSource.h"
#include "nuXmlParser/conforming/sourceForm.h"
#include "nuXmlParser/conforming/sourcePlace.h"
#include "nuXmlParser/markup/checkedText.h"

namespace nu {

/// How the name of an encoding that a document declares goes with its bytes.
enum class DeclaredEncoding : std::uint8_t {
    Fits,
    Unknown,    ///< nobody knows an encoding of that name
    Contradicts ///< the bytes are of another encoding
};

/// The text of a source as UTF-8 of characters that XML allows, a window of it at a time.
///
/// UTF-8 in memory shows where it is, everything else in a window that moves on, and grows when
/// something has to be seen as a whole. Text is checked before it shows; what is wrong with it ends
/// it, and is told when somebody wants to see more.
class SourceText {
public:
    explicit SourceText(ByteSource bytes) : bytes_(std::move(bytes)) {}

    /// Settles the encoding: `knownEncoding` if it is not empty, else what mark and declaration
    /// say. To be called first, once.
    void open(const std::string& knownEncoding);
    /// What has to be seen as a whole and has more bytes is a fault, unless the source lies in
    /// memory.
    void limitWindow(std::size_t longest) noexcept { longest_ = longest; }
    /// The first line counts as the one of that number.
    void countLinesFrom(std::int64_t line) noexcept {
        beginPlace_ = counted_ = PlaceCounter({line, 1});
    }

    /// How the text was encoded, as a document would name it, and whether it had a mark.
    [[nodiscard]] const std::string& encodingName() const noexcept { return encodingName_; }
    [[nodiscard]] bool hasMark() const noexcept { return hasMark_; }
    /// Whether the text is another than the source's own bytes.
    [[nodiscard]] bool isTranscoded() const noexcept { return transcoder_ != nullptr; }
    /// Whether text never moves.
    [[nodiscard]] bool staysInPlace() const noexcept { return staysInPlace_; }
    /// What is to be said of a name that the declaration gives. Whoever knows the encoding from
    /// outside does not ask.
    [[nodiscard]] DeclaredEncoding judge(std::string_view declaredName) const;
    /// What the first line ended with, as far as text has shown.
    [[nodiscard]] TNuLineEnd lineEnd() const noexcept { return lineEnd_; }
    /// What the bytes are, for whoever is told of a contradiction.
    [[nodiscard]] const char16_t* foundEncoding() const noexcept;

    /// Tells what is known of the source.
    void describe(TNuSourceForm& form) const {
        form.encoding = encodingName_;
        form.hasMark = hasMark_;
        form.lineEnd = lineEnd_;
    }

    /// The text that shows.
    [[nodiscard]] const char* begin() const noexcept { return begin_; }
    [[nodiscard]] const char* end() const noexcept { return end_; }
    /// Shows more text; what stands before `keep` may go, and `keep` moves with the text. False at
    /// the end of the source. Throws ENuXmlFault where something is wrong with the text behind its
    /// end, and what the stream throws.
    bool showMore(const char*& keep);
    /// Shows more text where that moves none; tells nobody what is wrong with it.
    bool showAhead();

    /// Where text in the window stands in the source.
    [[nodiscard]] SourcePlace placeOf(const char* place) const noexcept;
    /// The same at less cost for who asks for one place behind the other.
    [[nodiscard]] SourcePlace countTo(const char* place) noexcept;
    /// The number of bytes of text before a place in the window, and back.
    [[nodiscard]] std::int64_t offsetOf(const char* place) const noexcept {
        return dropped_ + (place - begin_);
    }
    [[nodiscard]] const char* placeAt(std::int64_t offset) const noexcept {
        return begin_ + (offset - dropped_);
    }

    /// Behind a fault: appends the next piece of everything behind `from`, or behind what was
    /// given last; false at the end. Nothing is wrong any more: a byte that is no UTF-8 is one of
    /// Windows-1252, as for the reader by itself, and what is no character of another encoding
    /// becomes U+FFFD.
    bool passOn(const char* from, std::string& piece);

private:
    [[nodiscard]] bool isOneByteUnits() const noexcept;
    void findEncoding();
    void chooseDeclared();
    void useEncoding(std::string_view name);
    [[nodiscard]] std::string_view header();
    bool showInPlace();
    bool showInWindow(const char*& keep);
    void makeRoom(const char*& keep);
    std::size_t fillWindow(bool isLast);
    [[noreturn]] void raiseStop() const;
    void passBadByte(std::string& piece);
    void findLineEnd(std::string_view text) noexcept;

    ByteSource bytes_;
    TNuEncoding form_ = neAnsi; ///< by mark, or by the first characters
    bool hasMark_ = false;
    bool isDeclaredKnown_ = true;
    bool isDeclaredAscii_ = true; ///< the declaration reads the same in the encoding it names
    bool staysInPlace_ = false;
    std::string encodingName_;
    std::unique_ptr<TNuTranscoder> transcoder_;

    ByteRoom window_;
    std::size_t longest_ = std::numeric_limits<std::size_t>::max();
    const char* begin_ = nullptr;
    const char* end_ = nullptr;
    std::size_t unshown_ = 0; ///< bytes behind the end, from the first that is not allowed on
    std::int64_t dropped_ = 0;
    PlaceCounter beginPlace_;
    PlaceCounter counted_; ///< at a place in the window, from which countTo goes on
    const char* countedTo_ = nullptr;

    CheckedText::Stop stop_ = CheckedText::Stop::All; ///< why no more text shows
    char32_t notAllowed_ = 0;
    bool isPassingOn_ = false;
    TNuLineEnd lineEnd_ = leNone;
    bool isFirstBreakKnown_ = false;
};

} // namespace nu
