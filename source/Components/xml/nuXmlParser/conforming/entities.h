#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "common/textHash.h"

namespace nu {

/// A declared entity.
struct Entity {
    enum class Kind : std::uint8_t {
        Internal,
        External, ///< never fetched
        Unparsed,
    };

    std::string_view name; ///< which lives as long as the entity
    Kind kind = Kind::Internal;
    std::string text;    ///< what replaces a reference, of an internal one
    bool isOpen = false; ///< its text is being read
};

/// The declared entities of one kind, general or parameter; the first declaration counts. Entities
/// stay where they are.
class Entities {
public:
    void declare(std::string_view name, Entity&& entity) {
        const auto [place, isNew] = entities_.try_emplace(std::string(name), std::move(entity));
        place->second.name = place->first;
    }
    [[nodiscard]] Entity* find(std::string_view name) noexcept {
        const auto found = entities_.find(name);
        return found == entities_.end() ? nullptr : &found->second;
    }

private:
    std::unordered_map<std::string, Entity, TextHash, std::equal_to<>> entities_;
};

} // namespace nu
