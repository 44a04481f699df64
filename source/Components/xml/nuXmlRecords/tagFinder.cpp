#include "nuXmlRecords/tagFinder.h"

#include <cstring>

#include "nuXmlRecords/recordPath.h"

namespace nu {

namespace {

/// No name goes on behind one of these; a name that is so long is none that is sought.
bool endsName(char c) noexcept {
    return static_cast<unsigned char>(c) <= ' ' || c == '>' || c == '/' || c == '<';
}
constexpr std::size_t longestPrefix = 1024;

} // namespace

void TagFinder::look(std::string_view bytes, std::int64_t position) {
    const char* place = bytes.data();
    const char* const end = place + bytes.size();
    const auto longest = static_cast<std::ptrdiff_t>(name_.size() + longestPrefix);
    for (;;) {
        // 1. The next "<".
        if (!isInName_) {
            place = static_cast<const char*>(
                std::memchr(place, '<', static_cast<std::size_t>(end - place)));
            if (place == nullptr) {
                return;
            }
            less_ = position + (place - bytes.data());
            ++place;
            read_.clear();
            isInName_ = true;
        }
        // 2. Its name, of which a part may have come before.
        const char* const start = place;
        while (place != end && !endsName(*place) && place - start < longest) {
            ++place;
        }
        if (place == end) {
            read_.append(start, place);
            isInName_ = read_.size() < static_cast<std::size_t>(longest);
            return;
        }
        isInName_ = false;
        std::string_view name(start, place);
        if (!read_.empty()) {
            name = read_.append(name);
        }
        if (name.size() >= name_.size() && endsName(*place) && *place != '<' &&
            localNameIn(name) == name_) {
            found_.push_back(less_);
        }
    }
}

} // namespace nu
