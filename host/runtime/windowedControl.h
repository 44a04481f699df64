#pragma once

#include <span>
#include <vector>

#include "host/runtime/component.h"

namespace host {

/// A component that stands in another one, its parent, and may hold others: what a host without
/// windows knows of a control. The parent says where a control is shown, the owner when it goes.
class NUXML_API TWindowedControl : public Published<TWindowedControl, TComponent> {
public:
    explicit TWindowedControl(TComponent* owner = nullptr) : Published(owner) {}
    /// Those in it lose their parent.
    ~TWindowedControl() override;

    /// The control that it stands in; null outside of any.
    [[nodiscard]] TWindowedControl* Parent() const noexcept { return parent_; }
    /// Puts the control behind those that are in `parent` already; null takes it out. Throws
    /// host::Exception when it would stand in itself.
    void SetParent(TWindowedControl* parent);
    /// The controls in this one, in the order in which they came; valid until that changes.
    [[nodiscard]] std::span<TWindowedControl* const> Controls() const noexcept { return controls_; }

    static constexpr auto published = publish<TWindowedControl>(u"TWindowedControl");

private:
    TWindowedControl* parent_ = nullptr;
    std::vector<TWindowedControl*> controls_;
};

} // namespace host
