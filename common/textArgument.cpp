#include "common/textArgument.h"

#include "common/utf8.h"
#include "host/runtime/exception.h"
#include "host/runtime/format.h"

namespace {

constexpr std::u16string_view malformed = u"The text is not well-formed UTF-8 (at byte %d)";

} // namespace

void TNuText::widen(std::string_view bytes) {
    char16_t* units = inside_.data();
    if (bytes.size() > insideLimit) {
        // Not std::make_unique, which would fill the memory first.
        outside_.reset(new char16_t[bytes.size()]);
        units = outside_.get();
    }
    const TNuUtf8Prefix decoded = NuDecodeUtf8Prefix(bytes, units);
    if (decoded.Bytes != bytes.size()) {
        throw host::EConvertError(host::formatMessage(malformed, {decoded.Bytes}));
    }
    view_ = {units, decoded.Units};
}
