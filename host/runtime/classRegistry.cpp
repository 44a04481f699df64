#include "host/runtime/classRegistry.h"

#include <algorithm>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

#include "host/runtime/asciiCase.h"

namespace host {

namespace {

/// A name as the registry looks it up.
std::u16string folded(std::u16string_view name) {
    std::u16string text(name);
    std::transform(text.begin(), text.end(), text.begin(), lowerAscii);
    return text;
}

struct Registry {
    std::mutex mutex;
    /// Those of one name, the latest last.
    std::unordered_map<std::u16string, std::vector<const TClassInfo*>> classes;
};

Registry& registry() {
    static Registry instance;
    return instance;
}

auto isSame(const TClassInfo& info) {
    return [&info](const TClassInfo* entry) { return entry->is(info); };
}

} // namespace

bool RegisterClass(const TClassInfo& info) {
    Registry& all = registry();
    const std::lock_guard lock(all.mutex);
    auto& namesakes = all.classes[folded(info.name)];
    if (std::any_of(namesakes.begin(), namesakes.end(), isSame(info))) {
        return false;
    }
    namesakes.push_back(&info);
    return true;
}

void UnregisterClass(const TClassInfo& info) noexcept {
    Registry& all = registry();
    const std::lock_guard lock(all.mutex);
    for (auto& [name, namesakes] : all.classes) {
        std::erase_if(namesakes, isSame(info));
    }
}

const TClassInfo* FindClass(std::u16string_view name) {
    Registry& all = registry();
    const std::lock_guard lock(all.mutex);
    const auto found = all.classes.find(folded(name));
    return found == all.classes.end() || found->second.empty() ? nullptr : found->second.back();
}

} // namespace host
