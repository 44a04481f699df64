#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace nu {

/// Which elements are records: those of one name wherever they are, or those at names from the root
/// down. Prefixes do not matter; "*" stands for any name.
class RecordPath {
public:
    /// "page", "//page", "dump/page", "/dump/page". Throws host::Exception for anything else.
    explicit RecordPath(std::u16string_view text);

    /// Whether the start tag that comes next is that of a record. Called for start tags one after
    /// the other as they come, again for the same one if need be; those inside of records may be
    /// left out.
    [[nodiscard]] bool matches(std::string_view name, std::size_t depth) noexcept;
    /// The local name of records; empty where it may be any.
    [[nodiscard]] const std::string& recordName() const noexcept { return names_.back(); }

private:
    std::vector<std::string> names_; ///< in UTF-8; empty for any name
    bool isAnywhere_ = false;
    std::size_t matched_ =
        0; ///< how many of the open elements, from the root down, are on the path
};

/// What stands behind the prefix of a name.
[[nodiscard]] inline std::string_view localNameIn(std::string_view name) noexcept {
    return name.substr(name.find(':') + 1);
}

} // namespace nu
