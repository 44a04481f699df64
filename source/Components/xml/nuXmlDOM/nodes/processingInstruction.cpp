#include "nuXmlDOM/core/processingInstruction.h"

#include <algorithm>
#include <vector>

#include "common/caseFolding.h"
#include "host/runtime/whiteSpace.h"
#include "nuXmlDOM/core/document.h"
#include "nuXmlDOM/nodes/makeNode.h"
#include "nuXmlDOM/upkeep/documentParts.h"

const TNuDOMNodeClass TNuDOMProcessingInstruction::Class{
    u"TNuDOMProcessingInstruction", host::PROCESSING_INSTRUCTION_NODE,
    nu::createNode<TNuDOMProcessingInstruction>};

namespace {

constexpr std::size_t cNone = std::u16string_view::npos;

/// The pairs name="value" in the data of an instruction: a pair ends with each second quote.
std::vector<std::u16string_view> pairsOf(std::u16string_view data) {
    std::vector<std::u16string_view> pairs;
    std::size_t start = 0;
    for (;;) {
        const std::size_t open = data.find(cNuQuote, start);
        const std::size_t close = open != cNone ? data.find(cNuQuote, open + 1) : cNone;
        if (close == cNone) {
            return pairs;
        }
        pairs.push_back(host::trimmed(data.substr(start, close + 1 - start)));
        start = close + 1;
    }
}

bool isPairOf(std::u16string_view pair, std::u16string_view name) {
    const std::size_t end = pair.find(cNuEqual);
    return end != cNone && NuEqualFolded(pair.substr(0, end), name);
}

/// Appends a pair on the one line that data are, with a blank behind it.
void appendPair(NuXmlString& data, std::u16string_view pair) {
    constexpr std::u16string_view lineBreak = u"\r\n";
    for (std::size_t end = 0; (end = pair.find(lineBreak)) != cNone;) {
        data.append(pair.substr(0, end)).push_back(cNuSpace);
        pair.remove_prefix(end + lineBreak.size());
    }
    data.append(pair).push_back(cNuSpace);
}

} // namespace

NuXmlString TNuDOMProcessingInstruction::get_nodeValue() const { return text_.toString(); }

void TNuDOMProcessingInstruction::set_nodeValue(std::u16string_view value) {
    text_.assign(OwnerDocument()->parts().memory, value);
}

NuXmlString TNuDOMProcessingInstruction::getAttribute(std::u16string_view /*name*/) const {
    const NuXmlString data = get_data();
    const NuXmlString target = get_target();
    const std::size_t place = target.empty() ? cNone : data.find(target);
    const std::size_t open = place != cNone ? data.find(cNuQuote, place) : cNone;
    if (open == cNone) {
        return {};
    }
    // Without a closing quote the value is all that follows.
    const std::size_t close = std::min(data.find(cNuQuote, open + 1), data.size());
    return data.substr(open + 1, close - open - 1);
}

void TNuDOMProcessingInstruction::setAttribute(std::u16string_view name,
                                               std::u16string_view value) {
    // 1. The pair as it is to be.
    NuXmlString changed(name);
    changed.append(u"=\"").append(value).push_back(cNuQuote);
    // 2. It takes the place of the first of that name, else comes last.
    const NuXmlString data = get_data();
    std::vector<std::u16string_view> pairs = pairsOf(data);
    const auto place = std::find_if(pairs.begin(), pairs.end(), [name](std::u16string_view pair) {
        return isPairOf(pair, name);
    });
    if (place != pairs.end()) {
        *place = changed;
    } else {
        pairs.push_back(changed);
    }
    // 3. All pairs on one line.
    NuXmlString joined;
    joined.reserve(data.size() + changed.size() + pairs.size());
    for (const std::u16string_view pair : pairs) {
        appendPair(joined, pair);
    }
    set_data(joined);
}
