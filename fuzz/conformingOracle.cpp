// Documents through reader and conforming stage, and through expat: both must refuse them, or tell
// the same events at the same lines.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "support/outlines.h"

namespace {

/// Beyond ASCII expat knows the names of an older edition, and other encodings; and it is asked to
/// end URIs with a brace.
bool isComparable(std::string_view document) {
    return std::all_of(document.begin(), document.end(),
                       [](char c) { return static_cast<unsigned char>(c) < 0x80 && c != '}'; });
}

/// Faults that expat does not look for: the version, and what a local name begins with.
bool isMoreThanExpatSays(const support::Outline& ours) {
    return ours.fault.starts_with("this version of XML is not known") ||
           ours.fault.starts_with("a colon is misplaced in");
}

/// What may be declared outside of the document is left out of values by expat, without a word, and
/// stands in ours as it came.
bool mayHoldSkippedReferences(std::string_view document, const support::Outline& ours) {
    const auto holds = [&](std::string_view word) { return document.find(word) != document.npos; };
    return (holds("%") || holds("SYSTEM") || holds("PUBLIC")) &&
           ours.text.find('&') != std::string::npos;
}

[[noreturn]] void report(std::string_view what, const support::Outline& ours,
                         const support::Outline& expected) {
    std::fprintf(stderr, "%.*s\nours: %s\n%s\nexpat: %s\n%s\n", static_cast<int>(what.size()),
                 what.data(), ours.fault.c_str(), ours.text.c_str(), expected.fault.c_str(),
                 expected.text.c_str());
    std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view document(reinterpret_cast<const char*>(data), size);
    if (!isComparable(document)) {
        return 0;
    }
    const auto expected = support::expatOutline(document);
    if (!expected) {
        return 0;
    }
    const support::Outline ours = support::conformingOutline(document);
    if (isMoreThanExpatSays(ours)) {
        return 0;
    }
    if (ours.isWellFormed != expected->isWellFormed) {
        report("another verdict", ours, *expected);
    }
    if (ours.isWellFormed && !mayHoldSkippedReferences(document, ours) &&
        ours.text != expected->text) {
        report("other events", ours, *expected);
    }
    if (ours.isWellFormed && ours.startTagLines != expected->startTagLines) {
        report("other lines", ours, *expected);
    }
    return 0;
}
