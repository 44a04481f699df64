#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "host/runtime/persistent.h"

namespace host {

/// An object with a name that may own other components, and be owned by one: a tree of objects that
/// live and go together.
///
/// The owner deletes its components, the last first, when it goes; a component that goes before is
/// taken out of its owner's list. So components that have an owner are made with `new`, best by
/// Add. One without an owner belongs to whoever made it.
class NUXML_API TComponent : public Published<TComponent> {
public:
    explicit TComponent(TComponent* owner = nullptr);
    TComponent(const TComponent&) = delete;
    TComponent& operator=(const TComponent&) = delete;
    ~TComponent() override;

    /// The name that the owner finds it by; "" without one.
    [[nodiscard]] const std::u16string& GetName() const noexcept { return name_; }
    /// Names a component; an empty name is none. Throws host::Exception for a name that no XML
    /// element can have and for one that another component of the owner has, letter case of ASCII
    /// ignored.
    void SetName(std::u16string_view name);

    /// The component that destroys this one; null without one.
    [[nodiscard]] TComponent* Owner() const noexcept { return owner_; }
    /// What is owned, in the order in which it came; valid until that changes.
    [[nodiscard]] std::span<TComponent* const> Components() const noexcept { return components_; }
    /// The owned component of that name, letter case of ASCII ignored, or null.
    [[nodiscard]] TComponent* FindComponent(std::u16string_view name) const;

    /// Makes a component that this one owns.
    template <class Component, class... Arguments> Component& Add(Arguments&&... arguments) {
        auto made = std::make_unique<Component>(std::forward<Arguments>(arguments)...);
        InsertComponent(*made);
        return *made.release();
    }
    /// Takes a component over from its former owner. Throws host::Exception, and changes nothing,
    /// when one of its name is owned already, and when this component would own itself.
    void InsertComponent(TComponent& component);
    /// Gives a component away: it belongs to the caller from now on. One that is not owned by this
    /// component stays where it is.
    void RemoveComponent(TComponent& component) noexcept;

    static constexpr auto published = publish<TComponent>(
        u"TComponent", prop<&TComponent::GetName, &TComponent::SetName>().Default(u""));

private:
    /// Names are compared without regard to the letter case of ASCII.
    struct NameHash {
        std::size_t operator()(std::u16string_view name) const noexcept;
    };
    struct NameEqual {
        bool operator()(std::u16string_view left, std::u16string_view right) const noexcept;
    };

    NUXML_LOCAL void checkName(std::u16string_view name, const TComponent* owner) const;

    std::u16string name_;
    TComponent* owner_ = nullptr;
    std::vector<TComponent*> components_;
    /// The keys are the names that the components hold.
    std::unordered_map<std::u16string_view, TComponent*, NameHash, NameEqual> byName_;
};

} // namespace host
