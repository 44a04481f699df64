#include "nuXmlParser/conforming/sourceText.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>

#include "common/codePage.h"
#include "common/utf8.h"
#include "host/runtime/format.h"
#include "host/runtime/utf8Sequence.h"
#include "nuXmlParser/conforming/conformingFaults.h"
#include "nuXmlParser/conforming/conformingMessages.h"
#include "nuXmlParser/conforming/xmlDeclaration.h"

namespace nu {

namespace {

using namespace std::string_view_literals;

/// Text that is checked at once where it stays in place: what comes next finds it in the nearer
/// caches.
constexpr std::size_t pieceSize = 32 * 1024;
/// Free room that the window gets.
constexpr std::size_t windowRoom = 64 * 1024;
/// Where the search for a declared encoding ends.
constexpr std::size_t longestHeader = 64 * 1024;

struct Signature {
    std::string_view bytes;
    TNuEncoding encoding;
    bool isMark;
};

/// The first one that fits counts.
constexpr std::array signatures = {
    Signature{"\xEF\xBB\xBF"sv, neUtf8, true},
    Signature{"\xFF\xFE\0\0"sv, neUtf32LittleEndian, true},
    Signature{"\0\0\xFE\xFF"sv, neUtf32BigEndian, true},
    Signature{"\xFF\xFE"sv, neUtf16LittleEndian, true},
    Signature{"\xFE\xFF"sv, neUtf16BigEndian, true},
    Signature{"<\0\0\0"sv, neUtf32LittleEndian, false},
    Signature{"\0\0\0<"sv, neUtf32BigEndian, false},
    Signature{"<\0"sv, neUtf16LittleEndian, false},
    Signature{"\0<"sv, neUtf16BigEndian, false},
    Signature{"\n\0"sv, neUtf16LittleEndian, false},
    Signature{"\0\n"sv, neUtf16BigEndian, false},
    Signature{"\r\0"sv, neUtf16LittleEndian, false},
    Signature{"\0\r"sv, neUtf16BigEndian, false},
    Signature{"\t\0"sv, neUtf16LittleEndian, false},
    Signature{"\0\t"sv, neUtf16BigEndian, false},
    Signature{" \0"sv, neUtf16LittleEndian, false},
    Signature{"\0 "sv, neUtf16BigEndian, false},
};

struct WideName {
    std::string_view name;
    std::array<TNuEncoding, 2> encodings;
};

/// Names of encodings whose units are wider than a byte.
constexpr std::array wideNames = {
    WideName{"utf-16", {neUtf16LittleEndian, neUtf16BigEndian}},
    WideName{"utf-16le", {neUtf16LittleEndian, neUtf16LittleEndian}},
    WideName{"utf-16be", {neUtf16BigEndian, neUtf16BigEndian}},
    WideName{"ucs-2", {neUtf16LittleEndian, neUtf16BigEndian}},
    WideName{"iso-10646-ucs-2", {neUtf16LittleEndian, neUtf16BigEndian}},
    WideName{"utf-32", {neUtf32LittleEndian, neUtf32BigEndian}},
    WideName{"utf-32le", {neUtf32LittleEndian, neUtf32LittleEndian}},
    WideName{"utf-32be", {neUtf32BigEndian, neUtf32BigEndian}},
    WideName{"ucs-4", {neUtf32LittleEndian, neUtf32BigEndian}},
    WideName{"iso-10646-ucs-4", {neUtf32LittleEndian, neUtf32BigEndian}},
};

const WideName* findWideName(std::string_view name) noexcept {
    const auto isSame = [name](const WideName& wide) {
        return std::equal(name.begin(), name.end(), wide.name.begin(), wide.name.end(),
                          [](char a, char b) {
                              return (a >= 'A' && a <= 'Z' ? static_cast<char>(a + 0x20) : a) == b;
                          });
    };
    const auto* const found = std::find_if(wideNames.begin(), wideNames.end(), isSame);
    return found == wideNames.end() ? nullptr : found;
}

/// The name under which the transcoder knows what a signature found.
const char* transcoderName(TNuEncoding encoding) noexcept {
    switch (encoding) {
    case neUtf16LittleEndian:
        return "UTF-16LE";
    case neUtf16BigEndian:
        return "UTF-16BE";
    case neUtf32LittleEndian:
        return "UTF-32LE";
    case neUtf32BigEndian:
        return "UTF-32BE";
    case neAnsi:
    case neUtf8:
        break;
    }
    return "UTF-8";
}

/// Whether an ASCII text reads the same in an encoding.
bool readsAsAscii(std::string_view name, std::string_view text) {
    const std::unique_ptr<TNuTranscoder> transcoder = TNuTranscoder::Create(name);
    std::string read(text.size() + TNuTranscoder::LeastRoom, '\0');
    const TNuTranscoded result = transcoder->Transcode(text, false, read.data(), read.size());
    return result.Stop == TNuTranscoding::All &&
           std::string_view(read).substr(0, result.Written) == text;
}

} // namespace

bool SourceText::isOneByteUnits() const noexcept { return form_ == neAnsi || form_ == neUtf8; }

void SourceText::open(const std::string& knownEncoding) {
    // 1. A mark, or characters that show how wide they are.
    findEncoding();
    encodingName_ = isOneByteUnits()                                            ? "UTF-8"
                    : form_ == neUtf16LittleEndian || form_ == neUtf16BigEndian ? "UTF-16"
                                                                                : "UTF-32";
    // 2. What is known from outside goes before what the document says.
    if (!knownEncoding.empty()) {
        if (!hasMark_) {
            form_ = neAnsi;
            useEncoding(knownEncoding);
        } else if (!isOneByteUnits()) {
            transcoder_ = TNuTranscoder::Create(transcoderName(form_));
        }
        if (!isDeclaredKnown_) {
            throw makeFault(messages::encodingUnknown, knownEncoding, {});
        }
    } else if (!isOneByteUnits()) {
        transcoder_ = TNuTranscoder::Create(transcoderName(form_));
    } else if (form_ == neAnsi) {
        chooseDeclared();
    }
    // 3. Nothing shows yet.
    staysInPlace_ = bytes_.isInMemory() && transcoder_ == nullptr;
    begin_ = staysInPlace_ ? bytes_.ahead().data() : window_.data();
    end_ = countedTo_ = begin_;
}

void SourceText::findEncoding() {
    bytes_.readAtLeast(4);
    const std::string_view ahead = bytes_.ahead();
    for (const Signature& signature : signatures) {
        if (ahead.starts_with(signature.bytes)) {
            form_ = signature.encoding;
            hasMark_ = signature.isMark;
            bytes_.skip(hasMark_ ? signature.bytes.size() : 0);
            return;
        }
    }
}

/// The beginning of the text up to the end of its XML declaration; empty where it has none.
std::string_view SourceText::header() {
    constexpr std::string_view start = "<?xml";
    bytes_.readAtLeast(start.size());
    if (!bytes_.ahead().starts_with(start)) {
        return {};
    }
    std::size_t end = bytes_.ahead().find("?>");
    while (end == std::string_view::npos && bytes_.ahead().size() < longestHeader &&
           bytes_.readMore()) {
        end = bytes_.ahead().find("?>");
    }
    return end == std::string_view::npos ? std::string_view() : bytes_.ahead().substr(0, end + 2);
}

void SourceText::chooseDeclared() {
    const std::string_view text = header();
    if (text.empty()) {
        return;
    }
    const std::string name(XmlDeclaration::read(text).encoding);
    if (name.empty() || findWideName(name) != nullptr) {
        return;
    }
    useEncoding(name);
    if (transcoder_ != nullptr) {
        isDeclaredAscii_ = readsAsAscii(name, text);
        if (!isDeclaredAscii_) {
            transcoder_.reset();
        }
    }
}

void SourceText::useEncoding(std::string_view name) {
    encodingName_ = name;
    if (NuFindCodePage(name) == cNuCodePageUtf8) {
        return;
    }
    transcoder_ = TNuTranscoder::Create(name);
    isDeclaredKnown_ = transcoder_ != nullptr;
}

DeclaredEncoding SourceText::judge(std::string_view declaredName) const {
    const WideName* const wide = findWideName(declaredName);
    if (wide != nullptr) {
        const bool fits = std::find(wide->encodings.begin(), wide->encodings.end(), form_) !=
                          wide->encodings.end();
        return fits ? DeclaredEncoding::Fits : DeclaredEncoding::Contradicts;
    }
    if (form_ != neAnsi) {
        const bool fits = form_ == neUtf8 && NuFindCodePage(declaredName) == cNuCodePageUtf8;
        return fits ? DeclaredEncoding::Fits : DeclaredEncoding::Contradicts;
    }
    return !isDeclaredKnown_  ? DeclaredEncoding::Unknown
           : isDeclaredAscii_ ? DeclaredEncoding::Fits
                              : DeclaredEncoding::Contradicts;
}

const char16_t* SourceText::foundEncoding() const noexcept {
    switch (form_) {
    case neUtf16LittleEndian:
    case neUtf16BigEndian:
        return u"UTF-16";
    case neUtf32LittleEndian:
    case neUtf32BigEndian:
        return u"UTF-32";
    case neUtf8:
        return u"marked as UTF-8";
    case neAnsi:
        break;
    }
    return u"of one byte";
}

bool SourceText::showMore(const char*& keep) {
    if (stop_ != CheckedText::Stop::All) {
        raiseStop();
    }
    const std::ptrdiff_t kept = end_ - keep;
    if (staysInPlace_ ? showInPlace() : showInWindow(keep)) {
        if (!isFirstBreakKnown_) {
            findLineEnd({keep + kept, end_});
        }
        return true;
    }
    if (stop_ != CheckedText::Stop::All) {
        raiseStop();
    }
    return false;
}

bool SourceText::showAhead() {
    const char* const from = end_;
    if (!staysInPlace_ || stop_ != CheckedText::Stop::All || !showInPlace()) {
        return false;
    }
    if (!isFirstBreakKnown_) {
        findLineEnd({from, end_});
    }
    return true;
}

/// Looks for the first line break of the document in text that begins to show.
void SourceText::findLineEnd(std::string_view text) noexcept {
    // A CR that ended the text before waits for what follows it.
    if (lineEnd_ == leCr) {
        lineEnd_ = text.front() == '\n' ? leCrLf : leCr;
        isFirstBreakKnown_ = true;
        return;
    }
    const std::size_t cr = text.find('\r');
    const std::size_t place = std::min(cr, text.substr(0, cr).find('\n'));
    if (place == text.npos) {
        return;
    }
    const bool isCr = text[place] == '\r';
    isFirstBreakKnown_ = !isCr || place + 1 < text.size();
    lineEnd_ = !isCr ? leLf : isFirstBreakKnown_ && text[place + 1] == '\n' ? leCrLf : leCr;
}

bool SourceText::showInPlace() {
    const std::string_view rest = bytes_.ahead();
    const std::string_view piece = rest.substr(0, pieceSize);
    const CheckedText checked = checkText(piece);
    // What only the end of the piece cuts off goes on.
    if (checked.stop != CheckedText::Stop::CutShort || piece.size() == rest.size()) {
        stop_ = checked.stop;
        notAllowed_ = checked.codePoint;
    }
    bytes_.skip(checked.length);
    end_ += checked.length;
    return checked.length > 0;
}

bool SourceText::showInWindow(const char*& keep) {
    makeRoom(keep);
    for (;;) {
        const bool isLast = bytes_.hasEnded();
        const std::size_t shown = fillWindow(isLast);
        if (shown > 0 || stop_ != CheckedText::Stop::All) {
            return shown > 0;
        }
        if (!bytes_.readMore() && isLast) {
            return false;
        }
    }
}

/// Moves the kept text to the start of the window and makes room behind it.
void SourceText::makeRoom(const char*& keep) {
    if (countedTo_ > keep) {
        counted_ = beginPlace_;
        countedTo_ = begin_;
    }
    static_cast<void>(countTo(keep));
    beginPlace_ = counted_;
    dropped_ += keep - begin_;
    const auto kept = static_cast<std::size_t>(end_ - keep);
    const std::size_t needed = std::max(kept + windowRoom / 2, windowRoom);
    if (needed > window_.size() && kept > longest_) {
        const SourcePlace place = beginPlace_.place();
        throw ENuXmlFault(host::formatMessage(messages::markupTooLong, {longest_}), place.line,
                          place.column);
    }
    window_.keep({keep, kept}, needed);
    begin_ = window_.data();
    keep = countedTo_ = begin_;
    end_ = begin_ + kept;
}

/// Puts text from the bytes ahead behind the end; gives the number of bytes that show.
std::size_t SourceText::fillWindow(bool isLast) {
    const std::string_view ahead = bytes_.ahead();
    char* const target = window_.data() + (end_ - window_.data());
    const auto room = static_cast<std::size_t>(window_.data() + window_.size() - target);
    CheckedText checked{0, CheckedText::Stop::All, 0};
    if (transcoder_ == nullptr) {
        const std::string_view piece = ahead.substr(0, room);
        checked = checkText(piece);
        std::copy_n(piece.data(), checked.length, target);
        bytes_.skip(checked.length);
        if (checked.stop == CheckedText::Stop::CutShort &&
            !(isLast && piece.size() == ahead.size())) {
            checked.stop = CheckedText::Stop::All;
        }
    } else {
        const TNuTranscoded text = transcoder_->Transcode(ahead, isLast, target, room);
        bytes_.skip(text.Read);
        checked = checkText({target, text.Written});
        unshown_ = text.Written - checked.length;
        if (checked.stop == CheckedText::Stop::All &&
            (text.Stop == TNuTranscoding::Malformed ||
             (text.Stop == TNuTranscoding::CutShort && isLast))) {
            checked.stop = CheckedText::Stop::Malformed;
        }
    }
    stop_ = checked.stop;
    notAllowed_ = checked.codePoint;
    end_ += checked.length;
    return checked.length;
}

void SourceText::raiseStop() const {
    if (stop_ == CheckedText::Stop::NotAllowed) {
        throw makeFault(messages::characterNotAllowed, hexCode(notAllowed_), placeOf(end_));
    }
    throw makeFault(messages::encodingInvalid, bytes_.done() + 1, placeOf(end_));
}

SourcePlace SourceText::placeOf(const char* place) const noexcept {
    PlaceCounter counter = beginPlace_;
    counter.moveOver({begin_, static_cast<std::size_t>(place - begin_)});
    return counter.place();
}

SourcePlace SourceText::countTo(const char* place) noexcept {
    if (place < countedTo_) {
        return placeOf(place);
    }
    counted_.moveOver({countedTo_, static_cast<std::size_t>(place - countedTo_)});
    countedTo_ = place;
    return counted_.place();
}

bool SourceText::passOn(const char* from, std::string& piece) {
    // 1. What is in the window.
    if (!isPassingOn_) {
        isPassingOn_ = true;
        piece.append(from, static_cast<std::size_t>(end_ - from) + unshown_);
        unshown_ = 0;
        return true;
    }
    // 2. What follows, with whatever is no character replaced.
    const std::size_t before = piece.size();
    if (bytes_.ahead().empty() && !bytes_.readMore() && transcoder_ == nullptr) {
        return false;
    }
    const bool isLast = bytes_.hasEnded();
    const std::string_view ahead = bytes_.ahead();
    bool isBad = false;
    if (transcoder_ != nullptr) {
        piece.resize(before + windowRoom);
        const TNuTranscoded text =
            transcoder_->Transcode(ahead, isLast, piece.data() + before, windowRoom);
        piece.resize(before + text.Written);
        bytes_.skip(text.Read);
        isBad = text.Stop == TNuTranscoding::Malformed ||
                (text.Stop == TNuTranscoding::CutShort && isLast);
    } else {
        const std::string_view text = ahead.substr(0, windowRoom);
        const CheckedText checked = checkText(text);
        piece.append(text.substr(0, checked.length));
        bytes_.skip(checked.length);
        if (checked.stop == CheckedText::Stop::NotAllowed) {
            const auto* const at =
                reinterpret_cast<const unsigned char*>(text.data() + checked.length);
            const std::size_t length = host::readUtf8Sequence(at, at + text.size()).length;
            piece.append(text.substr(checked.length, length));
            bytes_.skip(length);
        }
        isBad =
            checked.stop == CheckedText::Stop::Malformed ||
            (checked.stop == CheckedText::Stop::CutShort && isLast && text.size() == ahead.size());
    }
    if (isBad) {
        passBadByte(piece);
    }
    return piece.size() > before || bytes_.readMore();
}

/// Passes the first byte ahead, which begins no character.
void SourceText::passBadByte(std::string& piece) {
    const std::string_view byte = bytes_.ahead().substr(0, 1);
    if (transcoder_ == nullptr && !byte.empty()) {
        constexpr std::uint32_t windows1252 = 1252;
        piece += NuToUtf8(NuAnsiStringToWideString(byte, windows1252));
    } else {
        piece += "\xEF\xBF\xBD";
    }
    bytes_.skip(byte.size());
}

} // namespace nu
