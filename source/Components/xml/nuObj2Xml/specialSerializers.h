#pragma once

#include <span>
#include <vector>

#include "host/runtime/collection.h"
#include "host/runtime/component.h"
#include "host/runtime/stringList.h"
#include "host/runtime/windowedControl.h"
#include "nuObj2Xml/serializer.h"

/// \file
/// The serializers of the host's own classes, which hold more than properties. Each is registered
/// for its class from the beginning, and so for what derives from it.

/// Writes the strings of a host::TStringList, behind its properties, as elements "item":
/// ```
/// <Lines type="TStringList"><item type="string">one</item><item type="string">two</item></Lines>
/// ```
/// Reading puts the strings of the text in place of those that the list holds.
class NUXML_API TNuStringsSerializer : public TNuSerializer {
public:
    using TNuSerializer::TNuSerializer;

protected:
    [[nodiscard]] std::size_t ItemCount() const override;
    [[nodiscard]] TNuSerializerItem GetItem(std::size_t index) const override;
    void BeginReading() override;
    TNuSerializerItem ItemToRead(const TNuElementFound& element) override;

private:
    [[nodiscard]] NUXML_LOCAL host::TStringList& list() const;
};

/// Writes the items of a host::TCollection, behind its properties, as elements "item", each as its
/// own serializer writes it. Reading puts new items in place of those that the collection holds;
/// their class is the collection's, or one that the type attribute names, which has to be in the
/// class registry and derive from it.
class NUXML_API TNuCollectionSerializer : public TNuSerializer {
public:
    using TNuSerializer::TNuSerializer;

protected:
    [[nodiscard]] std::size_t ItemCount() const override;
    [[nodiscard]] TNuSerializerItem GetItem(std::size_t index) const override;
    void BeginReading() override;
    TNuSerializerItem ItemToRead(const TNuElementFound& element) override;

private:
    [[nodiscard]] NUXML_LOCAL host::TCollection& collection() const;
};

/// Writes what a host::TComponent owns into an element "Components" behind its properties, of which
/// the name is the first. Each component's element has the component's name, or that of its class
/// if it has none:
/// ```
/// <Main type="TModule"><Name type="string">Main</Name><Components><Clock type="TClock">...
/// ```
/// Reading finds components by their names and reads them in place; others are made by their class,
/// which has to be in the class registry and derive from TComponent, and belong to the component
/// that they are read for. What the text does not mention stays.
class NUXML_API TNuComponentSerializer : public TNuSerializer {
public:
    using TNuSerializer::TNuSerializer;

protected:
    [[nodiscard]] std::size_t ItemCount() const override;
    [[nodiscard]] TNuSerializerItem GetItem(std::size_t index) const override;
    [[nodiscard]] std::span<const std::u16string_view> ItemsElements() const override;
    TNuSerializerItem ItemToRead(const TNuElementFound& element) override;

    /// How many of the items are components, as ItemCount found them.
    [[nodiscard]] std::size_t WrittenComponents() const noexcept { return written_.size(); }

private:
    /// Found by ItemCount, so that items are not looked for one by one.
    mutable std::vector<host::TComponent*> written_;
};

/// Writes the controls that stand in a host::TWindowedControl into an element "Controls", behind
/// the element "Components", where those of its components are that stand in no control. A control
/// that reading makes stands in the one that it is read for, and belongs to the same owner; to the
/// control that it stands in, if that has no owner or its owner has a component of that name.
class NUXML_API TNuControlSerializer : public TNuComponentSerializer {
public:
    using TNuComponentSerializer::TNuComponentSerializer;

protected:
    [[nodiscard]] std::size_t ItemCount() const override;
    [[nodiscard]] TNuSerializerItem GetItem(std::size_t index) const override;
    [[nodiscard]] std::span<const std::u16string_view> ItemsElements() const override;
    TNuSerializerItem ItemToRead(const TNuElementFound& element) override;

private:
    [[nodiscard]] NUXML_LOCAL host::TWindowedControl& control() const;
};
