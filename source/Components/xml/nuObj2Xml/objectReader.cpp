#include <algorithm>
#include <vector>

#include "host/runtime/memoryStream.h"
#include "host/runtime/published.h"
#include "nuObj2Xml/elementName.h"
#include "nuObj2Xml/objectEvents.h"
#include "nuObj2Xml/objectStream.h"
#include "nuObj2Xml/sameText.h"
#include "nuObj2Xml/slotClass.h"
#include "nuXmlParser/parserErrors.h"

namespace nu {

namespace {

/// The names of a path.
std::vector<NuXmlString> stepsOf(std::u16string_view path) {
    std::vector<NuXmlString> steps;
    for (;;) {
        const std::size_t end = std::min(path.find(u'/'), path.size());
        checkElementName(path.substr(0, end));
        steps.emplace_back(path.substr(0, end));
        if (end == path.size()) {
            return steps;
        }
        path.remove_prefix(end + 1);
    }
}

/// Makes an object of every element at a path.
class PathEvents final : public ObjectEvents {
public:
    PathEvents(std::u16string_view path, const ObjectTaker& taker, TNuDeserializeOptions options)
        : ObjectEvents(options, true), steps_(stepsOf(path)), taker_(taker) {}
    ~PathEvents() override { drop(); }

    [[nodiscard]] std::size_t count() const noexcept { return count_; }

private:
    Target open(const StartedElement& element, std::size_t depth) override {
        if (!isObject(element, depth)) {
            return {};
        }
        drop(); // one that failed before
        const host::TClassInfo& info = classBelow(taker_.declared, element.className);
        made_ = {info.create(), &info};
        return {made_, nullptr, true};
    }

    void close(host::Instance /*object*/) override {
        ++count_;
        if (!taker_.take(std::exchange(made_, {}).object)) {
            throw ENuSaxHandledAbort(u"");
        }
    }

    void closeOutside(std::size_t depth) override { matched_ = std::min(matched_, depth - 1); }

    /// Whether an element outside of objects is one. One name counts anywhere; of more each has to
    /// be at its depth.
    bool isObject(const StartedElement& element, std::size_t depth) {
        if (steps_.size() == 1) {
            return isSame(element.name, steps_[0]);
        }
        if (depth != matched_ + 1 || depth > steps_.size() ||
            !isSame(element.name, steps_[depth - 1])) {
            return false;
        }
        // Inside of an object nobody asks for elements, so the last step need not be kept.
        matched_ += depth < steps_.size() ? 1 : 0;
        return depth == steps_.size();
    }

    void drop() noexcept {
        if (made_) {
            made_.info->destroy(made_.object);
            made_ = {};
        }
    }

    std::vector<NuXmlString> steps_;
    const ObjectTaker& taker_;
    std::size_t matched_ = 0; ///< how many steps the open elements are
    host::Instance made_;     ///< the object that is being read
    std::size_t count_ = 0;
};

} // namespace

std::size_t readObjects(host::TStream& stream, std::u16string_view path, const ObjectTaker& taker,
                        TNuDeserializeOptions options) {
    PathEvents events(path, taker, options);
    events.read([&](TNuSAXXMLReader& reader) {
        // What lies in memory is read there, however long it is, and needs no other buffer.
        if (dynamic_cast<host::TCustomMemoryStream*>(&stream) != nullptr) {
            reader.SetParserChoice(TNuSaxParserChoice::SmallStream);
        }
        reader.Parse(stream);
    });
    return events.count();
}

} // namespace nu
