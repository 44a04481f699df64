#pragma once

#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

#include "host/runtime/dataSet.h"
#include "host/runtime/exception.h"
#include "host/runtime/propertyValue.h"

namespace host {

/// The published properties of a class that can be fields: values of one piece, and optionals of
/// them.
class NUXML_API PublishedFields {
public:
    explicit PublishedFields(const TClassInfo& info);

    /// How many properties can be fields.
    [[nodiscard]] std::size_t count() const noexcept { return fields_.size(); }
    /// Throws EListError.
    [[nodiscard]] const TPropInfo& property(std::size_t field) const;
    /// The type of a field. Throws EListError.
    [[nodiscard]] TFieldType type(std::size_t field) const;

private:
    struct Field {
        const TPropInfo* property;
        TFieldType type;
    };
    std::vector<Field> fields_;
};

/// A vector of objects of a described class as a data set: their published values are the fields.
/// The vector belongs to the caller, has to outlive the data set and may be changed only through it
/// while it is walked through.
///
/// Enumerations and sets are text, unsigned integers the next larger signed ones; null is an
/// optional that holds nothing. Where a property cannot be written, SetValue throws
/// host::Exception.
template <class Class> class RangeDataSet final : public IDataSet {
public:
    explicit RangeDataSet(std::vector<Class>& objects)
        : objects_(&objects), fields_(classOf<Class>) {}

    [[nodiscard]] std::size_t FieldCount() const override { return fields_.count(); }
    [[nodiscard]] std::u16string FieldName(std::size_t field) const override {
        return std::u16string(fields_.property(field).name);
    }
    [[nodiscard]] TFieldType FieldType(std::size_t field) const override {
        return fields_.type(field);
    }
    void First() override {
        begun_.reset();
        current_ = 0;
    }
    void Next() override {
        begun_.reset();
        current_ += current_ < objects_->size() ? 1 : 0;
    }
    [[nodiscard]] bool Eof() const override { return !begun_ && current_ >= objects_->size(); }
    [[nodiscard]] Variant GetValue(std::size_t field) const override {
        Variant value = GetProperty(instance(atHand()), fields_.property(field));
        return value.IsEmpty() ? Variant(null) : value;
    }
    void SetValue(std::size_t field, const Variant& value) override {
        SetProperty(instance(atHand()), fields_.property(field), value);
    }
    void Append() override { begun_.emplace(); }
    void Post() override {
        if (begun_) {
            objects_->push_back(*std::move(begun_));
            begun_.reset();
            current_ = objects_->size() - 1;
        }
    }
    void Cancel() override { begun_.reset(); }

private:
    [[nodiscard]] const Class& atHand() const {
        if (!begun_) {
            checkListIndex(static_cast<std::int64_t>(current_), objects_->size());
        }
        return begun_ ? *begun_ : (*objects_)[current_];
    }

    std::vector<Class>* objects_;
    PublishedFields fields_;
    std::size_t current_ = 0;
    std::optional<Class> begun_;
};

} // namespace host
