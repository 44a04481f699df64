// What is created by path is found by that path, also when the document was written and read again.
//
// Each byte below 0x80 is a character of the value that is set, the others are words of paths; a
// line break ends a path, the next one its value.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "common/codePage.h"
#include "nuXmlDOM.h"

namespace {

constexpr std::u16string_view start =
    u"<root xmlns:p=\"u\"><a k=\"1\"><b>x</b></a>t<p:a/><!--c--><a/></root>";

constexpr std::u16string_view words[] = {
    u"/",   u"a",     u"b",   u"c",   u"p:a",    u"p:new", u"@k",   u"@new",     u"root",
    u"//",  u"*",     u"..",  u".",   u"[1]",    u"[2]",   u"[b]",  u"[@k='1']", u"new",
    u"/a/", u"root/", u" | ", u"/b/", u"node()", u"d.e",   u"_f-1", u"[@k]",     u"last",
};

/// Paths such as "//a/..//a" give the more nodes the longer they are, and filters that create what
/// they look for make more of them.
constexpr TNuDOMLimits limits = {.SelectedNodes = 10'000, .VisitedNodes = 100'000};

struct Step {
    std::u16string path;
    std::u16string value;
};

std::vector<Step> stepsOf(const std::uint8_t* data, std::size_t size) {
    std::vector<Step> steps(1);
    bool isValue = false;
    for (std::size_t index = 0; index < size; ++index) {
        const std::uint8_t byte = data[index];
        if (byte == '\n') {
            if (isValue) {
                steps.emplace_back();
            }
            isValue = !isValue;
        } else if (isValue) {
            steps.back().value += static_cast<char16_t>(byte < 0x80 ? byte : byte * 0x101);
        } else {
            steps.back().path += words[byte % std::size(words)];
        }
    }
    return steps;
}

/// Whether a text survives being written and read: white space alone does not, nor does what no
/// document can hold.
bool survives(std::u16string_view text) {
    bool hasMore = false;
    for (const char16_t unit : text) {
        if (unit < u' ' || (unit & 0xF800) == 0xD800 || unit >= 0xFFFE) {
            return false;
        }
        hasMore = hasMore || unit != u' ';
    }
    return hasMore;
}

/// Creates what is missing at a path and sets it. False where that is refused.
bool create(TNuDOMDocument& document, const Step& step) {
    try {
        TNuDOMNode* const node = document.SelectSingleNode(step.path, soCreate);
        if (node == nullptr || node->get_nodeType() == host::DOCUMENT_NODE) {
            return false;
        }
        node->set_text(step.value);
        return true;
    } catch (const host::Exception&) {
        return false; // what was made for the steps before stays
    }
}

/// None where a path gives too many.
std::vector<std::u16string> textsAt(TNuDOMDocument& document, std::u16string_view path) try {
    std::vector<std::u16string> texts;
    const auto list = document.CreateNodeList(path);
    for (const TNuDOMNode* node : *list) {
        texts.push_back(node->get_text());
    }
    return texts;
} catch (const ENuDomException&) {
    return {};
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    NuSetSystemCodePage(cNuCodePageUtf8);
    const auto document = NuCreateDOMDocument(start);
    document->SetLimits(limits);
    std::vector<std::u16string> found;
    bool isWritable = true;
    for (const Step& step : stepsOf(data, size)) {
        if (create(*document, step)) {
            isWritable = isWritable && survives(step.value);
            found.push_back(step.path);
        }
    }

    if (!isWritable) {
        return 0;
    }

    // Written, read and written it is the same, at every path.
    const std::u16string written = document->get_xml();
    const auto reloaded = NuCreateDOMDocument(written);
    reloaded->SetLimits(limits);
    if (reloaded->get_xml() != written) {
        std::abort();
    }
    for (const std::u16string& path : found) {
        if (textsAt(*reloaded, path) != textsAt(*document, path)) {
            std::abort();
        }
    }
    return 0;
}
