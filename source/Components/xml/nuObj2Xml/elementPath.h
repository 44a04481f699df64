#pragma once

#include <cstddef>
#include <string_view>
#include <utility>

#include "host/runtime/numberText.h"
#include "nuXmlParser/chars.h"

namespace nu {

/// The way to an element, for messages: "Person/Former/item[2]". The middle of a long one is left
/// out.
class ElementPath {
public:
    /// `index` counts the elements of a list from 1; 0 stands for none. An
    /// empty name adds nothing.
    void add(std::u16string_view name, std::size_t index) {
        if (name.empty()) {
            return;
        }
        NuXmlString step(name);
        if (index != 0) {
            step.push_back(u'[');
            host::NumberText(index).appendTo(step);
            step.push_back(u']');
        }
        ++count_;
        if (count_ <= kept) {
            text_.append(text_.empty() ? u"" : u"/").append(step);
        } else {
            // The last steps move up.
            if (count_ > 2 * kept) {
                last_.erase(0, last_.find(u'/', 1));
            }
            last_.append(u"/").append(step);
        }
    }

    [[nodiscard]] NuXmlString take() {
        return std::move(text_) + (count_ > 2 * kept ? u"/..." : u"") + last_;
    }

private:
    static constexpr std::size_t kept = 16; ///< steps at each end

    NuXmlString text_;
    NuXmlString last_;
    std::size_t count_ = 0;
};

} // namespace nu
