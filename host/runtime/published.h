#pragma once

#include "host/runtime/description.h"
#include "host/runtime/object.h"

/// \file
/// How a class publishes its properties: it lists them once, with pointers to its members, in a
/// constant. Nothing runs at start-up, and nothing is added to the objects but the pointer that
/// every class with virtual functions has.
/// ```
/// class TAddress : public host::Published<TAddress> {
/// public:
///     std::u16string Street;
///     std::int32_t Number = 0;
///
///     static constexpr auto published = host::publish<TAddress>(u"TAddress",
///         host::prop<&TAddress::Street>(),
///         host::prop<&TAddress::Number>().Default(0));
/// };
/// ```

namespace host {

/// \cond internal
template <class Class> const TClassInfo& detail::classInfoOf() noexcept { return classOf<Class>; }
/// \endcond

/// The class that all others derive from has no properties.
template <> inline constexpr auto describe<TObject> = publish<TObject>(u"TObject");

/// What a class with published properties derives from: `class TBoss : public Published<TBoss,
/// TPerson>` has the properties of TPerson and then its own.
template <class Class, class Base> class Published : public Base {
public:
    using Base::Base;

    /// The description of the class itself, also through a pointer to an ancestor.
    [[nodiscard]] const TClassInfo& ClassInfo() const override { return classOf<Class>; }
};

/// The object as what works with every class. Nothing is owned.
template <class Class> Instance instance(const Class& object) noexcept {
    return detail::instanceOf(&object);
}

} // namespace host
