#include "pathText.h"

#include <algorithm>

#include "arguments.h"
#include "common/utf8.h"
#include "nuXmlDOM.h"

namespace tool {

namespace {

/// Follows the brackets and the quotes of a path.
class PathWalk {
public:
    /// Whether the character stands outside of both; to be asked for one after the other.
    bool isOutside(char16_t character) noexcept {
        if (quote_ != 0) {
            quote_ = character == quote_ ? u'\0' : quote_;
            return false;
        }
        if (character == u'"' || character == u'\'') {
            quote_ = character;
        } else if (character == u'[') {
            ++depth_;
        } else if (character == u']' && depth_ > 0) {
            --depth_;
            return false;
        }
        return quote_ == 0 && depth_ == 0;
    }

private:
    std::size_t depth_ = 0;
    char16_t quote_ = 0;
};

} // namespace

std::u16string pathFromArgument(std::string_view argument) {
    std::optional<std::u16string> path = NuUtf8ToWideString(argument);
    if (!path) {
        throw UsageError("the path is not UTF-8");
    }
    return std::move(*path);
}

void checkPath(std::u16string_view path) {
    if (const std::u16string complaint = TNuDOMPath(path).Complaint(); !complaint.empty()) {
        throw UsageError(NuToUtf8(path) + ": " + NuToUtf8(complaint));
    }
}

std::size_t findOutside(std::u16string_view path, char16_t character) {
    PathWalk walk;
    const auto* const found = std::find_if(path.begin(), path.end(), [&](char16_t unit) {
        return walk.isOutside(unit) && unit == character;
    });
    return found == path.end() ? path.npos : static_cast<std::size_t>(found - path.begin());
}

std::size_t findLastOutside(std::u16string_view path, char16_t character) {
    std::size_t last = path.npos;
    for (std::size_t begin = 0; begin <= path.size();) {
        const std::size_t next = findOutside(path.substr(begin), character);
        if (next == path.npos) {
            break;
        }
        last = begin + next;
        begin = last + 1;
    }
    return last;
}

void complainAboutPath(Console& console, std::string_view name, std::u16string_view path,
                       const host::Exception& error) {
    // A number in a filter compares with numbers only, which is what happens here mostly.
    const bool isConversion = dynamic_cast<const host::EConvertError*>(&error) != nullptr;
    console.complain(std::string(name) + ": the path " + NuToUtf8(path), error.Message());
    if (isConversion) {
        console.complain("a filter compares text when its value stands in quotes: [@name='text']");
    }
}

} // namespace tool
