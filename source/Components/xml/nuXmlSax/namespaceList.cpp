#include "nuXmlSax/namespaceList.h"

#include <algorithm>

#include "common/expects.h"
#include "common/textHash.h"

namespace {

constexpr std::size_t firstSlotCount = 16;
/// Prefixes whose memory is kept between documents.
constexpr std::size_t keptPrefixes = 64;

std::uint64_t hashPrefix(std::u16string_view prefix) {
    return nu::hashText(nu::hashKeys(), prefix, NuFoldCase);
}

} // namespace

nu::PrefixScope& TNuSaxNamespaceList::prefixScope(std::u16string_view prefix) {
    if (prefix.empty()) {
        return default_;
    }
    nu::PrefixScope* const recent = recent_[recentPlace(prefix)];
    if (recent != nullptr && recent->text_ == prefix) {
        return *recent;
    }
    if (nu::PrefixScope* scope = find(prefix)) {
        return *scope;
    }
    if (2 * (prefixes_.size() + 1) > slots_.size()) {
        const std::size_t room = std::max(firstSlotCount, 2 * slots_.size()) / 2;
        prefixes_.reserve(room);
        inScope_.reserve(room);
        slots_.assign(std::max(firstSlotCount, 2 * slots_.size()), nullptr);
        for (const std::unique_ptr<nu::PrefixScope>& scope : prefixes_) {
            link(*scope);
        }
    }
    prefixes_.push_back(std::make_unique<nu::PrefixScope>(
        isExact_ ? std::u16string(prefix) : NuFolded(prefix), hashPrefix(prefix)));
    link(*prefixes_.back());
    return *prefixes_.back();
}

void TNuSaxNamespaceList::link(nu::PrefixScope& scope) noexcept {
    nu::PrefixScope*& slot = slots_[scope.hash_ & (slots_.size() - 1)];
    scope.next_ = slot;
    slot = &scope;
}

nu::PrefixScope* TNuSaxNamespaceList::find(std::u16string_view prefix) const {
    if (slots_.empty()) {
        return nullptr;
    }
    const std::uint64_t hash = hashPrefix(prefix);
    nu::PrefixScope* scope = slots_[hash & (slots_.size() - 1)];
    while (scope != nullptr &&
           (scope->hash_ != hash ||
            (isExact_ ? scope->text_ != prefix : !NuEqualFolded(scope->text_, prefix)))) {
        scope = scope->next_;
    }
    recent_[recentPlace(prefix)] = scope;
    return scope;
}

void TNuSaxNamespaceList::AddNamespace(std::int32_t level, nu::PrefixScope& scope,
                                       std::u16string_view prefix, std::u16string_view uri) {
    if (!scope.hasDeclaration(scope.count_)) {
        scope.further_.push_back(std::make_unique<TNuSaxNamespace>());
    }
    TNuSaxNamespace& declaration = scope.declaration(scope.count_);
    declaration.Prefix = prefix;
    if (declaration.Number == 0 || declaration.URI != uri) {
        declaration.Number = 0;
        declaration.URI = uri;
        declaration.Number = ++lastNumber_;
    }
    enter(level, scope, declaration);
}

bool TNuSaxNamespaceList::addAgain(std::int32_t level, nu::PrefixScope& scope,
                                   std::uint64_t number) {
    constexpr std::uint64_t none = 0;
    if (number == none || !scope.hasDeclaration(scope.count_)) {
        return false;
    }
    TNuSaxNamespace& declaration = scope.declaration(scope.count_);
    if (declaration.Number != number) {
        return false;
    }
    enter(level, scope, declaration);
    return true;
}

/// The declaration behind those of the prefix that are in scope comes into scope.
void TNuSaxNamespaceList::enter(std::int32_t level, nu::PrefixScope& scope,
                                TNuSaxNamespace& declaration) {
    inScope_.push_back(&scope);
    ++scope.count_;
    declaration.Level = level;
    scope.newest_ = &declaration;
    isOrdered_ = isOrdered_ && (inScope_.size() == 1 || level >= highestLevel_);
    highestLevel_ = inScope_.size() == 1 ? level : std::max(highestLevel_, level);
}

void TNuSaxNamespaceList::removeFrom(std::int32_t level) {
    if (!isOrdered_) {
        removeUnordered(level);
        return;
    }
    // Declarations come and go with their elements, so those to remove stand at the end.
    while (!inScope_.empty() && inScope_.back()->newest_->Level >= level) {
        removeNewest();
    }
    highestLevel_ = inScope_.empty() ? 0 : inScope_.back()->newest_->Level;
}

/// Where levels came in another order, declarations in between are to stay.
void TNuSaxNamespaceList::removeUnordered(std::int32_t level) {
    std::vector<TNuSaxNamespace> kept;
    for (; !inScope_.empty(); removeNewest()) {
        if (inScope_.back()->newest_->Level < level) {
            kept.push_back(*inScope_.back()->newest_);
        }
    }
    isOrdered_ = true;
    std::for_each(kept.rbegin(), kept.rend(), [this](const TNuSaxNamespace& declaration) {
        AddNamespace(declaration.Level, declaration.Prefix, declaration.URI);
    });
}

void TNuSaxNamespaceList::removeNewest() noexcept {
    nu::PrefixScope& scope = *inScope_.back();
    nu::expects(scope.count_ > 0);
    inScope_.pop_back();
    --scope.count_;
    scope.newest_ = scope.count_ > 0 ? &scope.declaration(scope.count_ - 1) : nullptr;
}

void TNuSaxNamespaceList::Clear() {
    while (!inScope_.empty()) {
        removeNewest();
    }
    if (prefixes_.size() > keptPrefixes) {
        dropPrefixes();
    }
    highestLevel_ = 0;
    isOrdered_ = true;
}

void TNuSaxNamespaceList::compareExactly(bool isExact) noexcept {
    if (isExact != isExact_) {
        dropPrefixes();
        isExact_ = isExact;
    }
}

void TNuSaxNamespaceList::dropPrefixes() noexcept {
    prefixes_.clear();
    slots_.clear();
    recent_.fill(nullptr);
}
