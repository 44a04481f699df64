#include "nuObj2Xml/specialSerializers.h"

#include <array>

#include "common/caseFolding.h"
#include "host/runtime/exception.h"
#include "host/runtime/format.h"
#include "nuObj2Xml/elementNames.h"
#include "nuObj2Xml/messages.h"
#include "nuObj2Xml/slotClass.h"

namespace {

using host::TComponent;
using host::TWindowedControl;

using nu::itemName;
constexpr std::u16string_view componentsName = u"Components";
constexpr std::u16string_view controlsName = u"Controls";

/// Makes a component that `owner` owns.
TComponent& makeComponent(TComponent& owner, const host::TClassInfo& info) {
    std::unique_ptr<TComponent> made(
        static_cast<TComponent*>(static_cast<host::TObject*>(info.create())));
    owner.InsertComponent(*made);
    return *made.release();
}

/// What stands in a control is written there and nowhere else.
bool standsInControl(const TComponent& component) {
    const auto* const control = dynamic_cast<const TWindowedControl*>(&component);
    return control != nullptr && control->Parent() != nullptr;
}

TNuSerializerItem itemOf(const TComponent& component, std::u16string_view itemsElement) {
    const std::u16string_view name =
        component.GetName().empty() ? component.ClassInfo().name : component.GetName();
    return {NuXmlString(name), {}, host::instance(component), itemsElement};
}

/// A component that is there already, which has to be what the element says.
TNuSerializerItem readInPlace(const TComponent& component, const TNuElementFound& element) {
    if (!element.className.empty() && !nu::isRelated(element.className, component.ClassInfo())) {
        throw host::Exception(
            host::formatMessage(nu::messages::doesNotInherit, {element.className}));
    }
    return itemOf(component, element.itemsElement);
}

bool isItem(const TNuElementFound& element) {
    return element.itemsElement.empty() && NuEqualAsciiWord(element.name, itemName);
}

} // namespace

// Strings

host::TStringList& TNuStringsSerializer::list() const {
    return dynamic_cast<host::TStringList&>(*GetObject());
}

std::size_t TNuStringsSerializer::ItemCount() const { return list().Count(); }

TNuSerializerItem TNuStringsSerializer::GetItem(std::size_t index) const {
    return {NuXmlString(itemName), host::valueRef(list()[index]), {}, {}};
}

void TNuStringsSerializer::BeginReading() { list().Clear(); }

TNuSerializerItem TNuStringsSerializer::ItemToRead(const TNuElementFound& element) {
    if (!isItem(element)) {
        return {};
    }
    return GetItem(list().Add({}));
}

// Collections

host::TCollection& TNuCollectionSerializer::collection() const {
    return dynamic_cast<host::TCollection&>(*GetObject());
}

std::size_t TNuCollectionSerializer::ItemCount() const { return collection().Count(); }

TNuSerializerItem TNuCollectionSerializer::GetItem(std::size_t index) const {
    return {NuXmlString(itemName), {}, host::instance(collection()[index]), {}};
}

void TNuCollectionSerializer::BeginReading() { collection().Clear(); }

TNuSerializerItem TNuCollectionSerializer::ItemToRead(const TNuElementFound& element) {
    if (!isItem(element)) {
        return {};
    }
    host::TCollection& items = collection();
    items.Add(nu::classBelow(items.ItemClass(), element.className));
    return GetItem(items.Count() - 1);
}

// Components

std::size_t TNuComponentSerializer::ItemCount() const {
    written_.clear();
    for (TComponent* const owned : dynamic_cast<const TComponent&>(*GetObject()).Components()) {
        if (!standsInControl(*owned)) {
            written_.push_back(owned);
        }
    }
    return written_.size();
}

TNuSerializerItem TNuComponentSerializer::GetItem(std::size_t index) const {
    return itemOf(*written_[index], componentsName);
}

std::span<const std::u16string_view> TNuComponentSerializer::ItemsElements() const {
    return {&componentsName, 1};
}

TNuSerializerItem TNuComponentSerializer::ItemToRead(const TNuElementFound& element) {
    if (element.itemsElement != componentsName) {
        return {};
    }
    auto& owner = dynamic_cast<TComponent&>(*GetObject());
    if (const TComponent* const known = owner.FindComponent(element.name)) {
        return readInPlace(*known, element);
    }
    if (element.className.empty()) {
        return {};
    }
    return itemOf(
        makeComponent(owner, nu::classBelow(host::classOf<TComponent>, element.className)),
        componentsName);
}

// Controls

TWindowedControl& TNuControlSerializer::control() const {
    return dynamic_cast<TWindowedControl&>(*GetObject());
}

std::size_t TNuControlSerializer::ItemCount() const {
    return TNuComponentSerializer::ItemCount() + control().Controls().size();
}

TNuSerializerItem TNuControlSerializer::GetItem(std::size_t index) const {
    const std::size_t components = WrittenComponents();
    return index < components ? TNuComponentSerializer::GetItem(index)
                              : itemOf(*control().Controls()[index - components], controlsName);
}

std::span<const std::u16string_view> TNuControlSerializer::ItemsElements() const {
    static constexpr std::array names{componentsName, controlsName};
    return names;
}

TNuSerializerItem TNuControlSerializer::ItemToRead(const TNuElementFound& element) {
    if (element.itemsElement != controlsName) {
        return TNuComponentSerializer::ItemToRead(element);
    }
    TWindowedControl& parent = control();
    TComponent* const owner = parent.Owner() != nullptr ? parent.Owner() : &parent;
    const TComponent* const named = owner->FindComponent(element.name);
    const TComponent* const own = parent.FindComponent(element.name);
    for (const TComponent* const known : {named, own}) {
        const auto* const found = dynamic_cast<const TWindowedControl*>(known);
        if (found != nullptr && found->Parent() == &parent) {
            return readInPlace(*found, element);
        }
    }
    if (element.className.empty()) {
        return {};
    }
    const host::TClassInfo& info =
        nu::classBelow(host::classOf<TWindowedControl>, element.className);
    auto& made =
        static_cast<TWindowedControl&>(makeComponent(named == nullptr ? *owner : parent, info));
    made.SetParent(&parent);
    return itemOf(made, controlsName);
}
