#pragma once

#include <cstddef>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "host/runtime/valueType.h"
#include "nuXmlParser/chars.h"

namespace nu {

/// The objects that are being written, from the outermost to the innermost: what tells that an
/// object holds itself, how deep objects are nested, and where something is.
///
/// Where a serializer writes on its own, what it writes is a chain of its own that goes on from the
/// one around it.
class ObjectChain {
public:
    static constexpr std::size_t maximumDepth = 10'000;
    /// Of serializers that call each other.
    static constexpr std::size_t maximumSerializers = 500;

    explicit ObjectChain(const ObjectChain* around = nullptr) noexcept
        : around_(around), serializers_(around == nullptr ? 0 : around->serializers_ + 1) {}

    /// Goes into an element; `index` counts those of a list from 1 and is 0 elsewhere.
    void enter(std::u16string_view name, std::size_t index = 0);
    /// Makes the element that was entered last that of an object. Throws host::Exception when the
    /// object is being written already, or is nested too deeply.
    void hold(host::Instance object);
    void leave() noexcept;

    /// "Person/Home/Number".
    [[nodiscard]] NuXmlString path() const;

private:
    struct Place {
        NuXmlString name;
        std::size_t index;
        host::Instance object;
    };
    struct Hash {
        std::size_t operator()(const host::Instance& object) const noexcept;
    };
    struct Same {
        bool operator()(const host::Instance& left, const host::Instance& right) const noexcept;
    };
    /// Objects nearer to the surface than that are looked through one by one.
    static constexpr std::size_t shallow = 16;

    [[nodiscard]] bool holds(host::Instance object) const noexcept;
    [[nodiscard]] std::size_t depth() const noexcept;

    const ObjectChain* around_;
    std::size_t serializers_;
    std::vector<Place> places_;
    std::size_t depth_ = 0; ///< the elements in use, which keep the memory of their names
    std::size_t objects_ = 0;
    std::unordered_set<host::Instance, Hash, Same> deep_;
};

} // namespace nu
