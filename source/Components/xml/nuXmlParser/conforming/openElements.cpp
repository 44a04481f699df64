#include "nuXmlParser/conforming/openElements.h"

namespace nu {

std::string OpenElements::path() const {
    std::string path;
    for (std::size_t index = 0; index < elements_.size(); ++index) {
        const std::size_t start = elements_[index].nameStart;
        const std::size_t end =
            index + 1 < elements_.size() ? elements_[index + 1].nameStart : used_;
        path.append(index == 0 ? "" : "/").append(names_.data() + start, end - start);
    }
    return path;
}

void OpenElements::settleLines(SourceText& source, std::int64_t offset) {
    // Those that are settled stand before those that are not, and offsets grow with the depth.
    std::size_t first = elements_.size();
    while (first > 0 && elements_[first - 1].line == inWindow) {
        --first;
    }
    for (; first < elements_.size() && elements_[first].offset < offset; ++first) {
        elements_[first].line = source.countTo(source.placeAt(elements_[first].offset)).line;
    }
}

} // namespace nu
