#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "objects/record.h"

namespace bench {

/// Objects in the form that a library works on, and their XML.
class Subject {
public:
    virtual ~Subject() = default;
    /// Writes the objects as XML in UTF-8, which is kept, and gives its size.
    virtual std::size_t write() = 0;
    /// Reads what was written last into new objects, which are kept.
    virtual void read() = 0;
    /// Whether what was read last equals what was written.
    [[nodiscard]] virtual bool isSame() const = 0;
};

/// A library that writes and reads objects.
struct ObjectLibrary {
    const char* name;
    std::unique_ptr<Subject> (*ofRecords)(const std::vector<Record>& records);
    /// One object with one string, which may be long.
    std::unique_ptr<Subject> (*ofText)(const std::string& text);
};

/// A subject made of what a library offers: `Codec::write(value)` gives XML and
/// `Codec::read(xml, value)` fills a new value.
template <class Codec, class Value> class SubjectOf final : public Subject {
public:
    explicit SubjectOf(Value value) : value_(std::move(value)) {}

    std::size_t write() override {
        // The former text goes first: memory for two is nobody's due.
        xml_ = {};
        xml_ = Codec::write(value_);
        return xml_.size();
    }
    void read() override {
        result_ = {};
        Codec::read(xml_, result_);
    }
    [[nodiscard]] bool isSame() const override { return result_ == value_; }

private:
    Value value_;
    Value result_;
    std::string xml_;
};

/// The library of a codec that takes records and notes as they are.
template <class Codec> constexpr ObjectLibrary libraryOf(const char* name) {
    return {name,
            [](const std::vector<Record>& records) -> std::unique_ptr<Subject> {
                return std::make_unique<SubjectOf<Codec, std::vector<Record>>>(records);
            },
            [](const std::string& text) -> std::unique_ptr<Subject> {
                return std::make_unique<SubjectOf<Codec, Note>>(Note{text});
            }};
}

/// All libraries that this program was built with, ours first.
std::vector<ObjectLibrary> objectLibraries();

} // namespace bench
