#include "nuXmlRecords/recordPath.h"

#include <algorithm>

#include "common/utf8.h"
#include "host/runtime/exception.h"
#include "host/runtime/format.h"
#include "nuXmlRecords/recordMessages.h"

namespace nu {

RecordPath::RecordPath(std::u16string_view text) {
    const auto refuse = [text] {
        throw host::Exception(host::formatMessage(messages::noRecordPath, {text}));
    };
    // 1. From the root down, or anywhere.
    std::u16string_view rest = text;
    const bool isWritten = rest.starts_with(u"//");
    rest.remove_prefix(isWritten ? 2 : rest.starts_with(u'/') ? 1 : 0);
    isAnywhere_ = isWritten || text.find(u'/') == text.npos;

    // 2. The names.
    constexpr std::u16string_view notInNames = u" \t\r\n<>&\"'=[]{}()@,|!?#;:";
    for (bool isLast = false; !isLast;) {
        const std::size_t slash = rest.find(u'/');
        const std::u16string_view name = rest.substr(0, slash);
        const std::u16string_view local = name.substr(name.find(u':') + 1);
        if (local.empty() || local.find_first_of(notInNames) != local.npos ||
            (local != u"*" && local.find(u'*') != local.npos)) {
            refuse();
        }
        names_.push_back(local == u"*" ? std::string() : NuToUtf8(local));
        isLast = slash == rest.npos;
        rest.remove_prefix(isLast ? rest.size() : slash + 1);
    }
    if (isAnywhere_ && names_.size() > 1) {
        refuse();
    }
}

bool RecordPath::matches(std::string_view name, std::size_t depth) noexcept {
    const auto fits = [name](const std::string& sought) {
        return sought.empty() || name == sought || localNameIn(name) == sought;
    };
    if (isAnywhere_) {
        return fits(names_.front());
    }
    // What was matched at this depth and below has ended.
    matched_ = std::min(matched_, depth - 1);
    if (matched_ + 1 != depth || matched_ == names_.size() || !fits(names_[matched_])) {
        return false;
    }
    ++matched_;
    return matched_ == names_.size();
}

} // namespace nu
