#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "nuXmlParser/conforming/namespaceBindings.h"
#include "nuXmlParser/conforming/openElements.h"
#include "nuXmlParser/conforming/sourceText.h"

namespace nu {

/// A start tag that the stage has come to.
struct ElementStart {
    std::size_t depth; ///< of its element; the root has 1
    /// The number of bytes of the source's text before its "<", or before the outermost reference
    /// to the entity in which it stands.
    std::int64_t offset;
    SourceText& source;
    const NamespaceBindings& bindings; ///< those of this tag have its depth
    const OpenElements& around;        ///< the elements in which it stands
};

/// What is to be done with an element.
enum class ElementUse : std::uint8_t {
    Take, ///< what the stage writes of it is wanted
    Pass, ///< it is checked, and what is inside of it is not sought
    Stop  ///< nothing from its start tag on is wanted, nor looked at
};

/// Seeks elements in a document while the stage passes it.
class ElementWatch {
public:
    ElementWatch() = default;
    ElementWatch(const ElementWatch&) = delete;
    ElementWatch& operator=(const ElementWatch&) = delete;

    /// Whether the element that begins here is one to be asked about. Called for every start tag
    /// outside of elements that were asked about, at least once and in their order.
    virtual bool seeks(std::string_view name, std::size_t depth, std::int64_t offset) = 0;
    /// What becomes of an element that is sought.
    virtual ElementUse use(const ElementStart& start) = 0;
    /// What is to be written behind the name in the start tag of an element that is taken.
    [[nodiscard]] virtual std::string_view insertion() const noexcept = 0;

protected:
    ~ElementWatch() = default;
};

} // namespace nu
