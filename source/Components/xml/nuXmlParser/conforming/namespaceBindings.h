#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace nu {

/// Whether a declaration may bind its prefix, which may be empty, to a URI.
[[nodiscard]] bool mayBind(std::string_view prefix, std::string_view uri) noexcept;

/// The namespaces that prefixes are bound to, innermost element first. A look-up takes the same
/// time however many declarations are in scope.
class NamespaceBindings {
public:
    struct Binding {
        std::string prefix;
        std::string uri;
        std::size_t depth;
        std::size_t hash;
        std::size_t older; ///< the next older one of the slot, counted from 1; 0 for none
    };

    /// Binds a prefix, empty for the default namespace, for the element at `depth`.
    void bind(std::string_view prefix, std::string_view uri, std::size_t depth);
    /// The declarations of the element at `depth`, and deeper ones, go.
    void unbind(std::size_t depth) noexcept {
        while (count_ > 0 && bindings_[count_ - 1].depth >= depth) {
            removeLast();
        }
    }
    /// The namespace of a prefix that is not empty; null where it is not declared.
    [[nodiscard]] const std::string* find(std::string_view prefix) const noexcept;

    /// All of them, outermost first.
    [[nodiscard]] std::span<const Binding> all() const noexcept {
        return {bindings_.data(), count_};
    }
    /// Changes whenever they do.
    [[nodiscard]] std::uint64_t version() const noexcept { return version_; }
    /// A number, never 0, that changes whenever a prefix may have become declared or undeclared.
    [[nodiscard]] std::uint64_t scope() const noexcept { return scope_; }

private:
    void removeLast() noexcept;
    void grow();

    std::vector<Binding> bindings_; ///< those behind the count wait to be used again
    std::size_t count_ = 0;
    std::uint64_t version_ = 0;
    std::uint64_t scope_ = 1;
    std::vector<std::size_t> slots_; ///< the newest one, counted from 1; 0 for none
};

} // namespace nu
