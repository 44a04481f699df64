#pragma once

#include <cstdint>
#include <string_view>

#include "nuXmlParser/textCounter.h"
#include "nuXmlSax/namespaceList.h"
#include "nuXmlSax/spaceStack.h"

namespace nu {

class ConformingSupply;

/// What a reader knows of the elements around the current place.
struct ReaderScopes {
    std::int32_t& depth;
    TNuSaxNamespaceList& namespaces;
    SpaceStack& space;
    /// Where the content has not been through the conforming stage yet: what is taken must be
    /// well-formed, and the stage is told of its elements. Otherwise null.
    ConformingSupply* stage = nullptr;
};

/// Takes content from the bytes of a document directly, where the reader's handlers are its own and
/// nobody else listens.
class DirectContent {
public:
    DirectContent() = default;
    DirectContent(const DirectContent&) = delete;
    DirectContent& operator=(const DirectContent&) = delete;

    /// Takes what it can of UTF-8 that begins with the "<" or ">" that is current, inside an
    /// element or, without a stage, where the root may begin, up to a "<" or ">" that becomes
    /// current: `passed` ends there, and meanwhile wherever somebody may ask for the place. The
    /// scopes are as if the reader had read that. Where NULs stand at the end of the bytes there is
    /// no more text.
    virtual void read(std::string_view bytes, PassedBytes& passed, const ReaderScopes& scopes) = 0;

    /// What may be taken of a document before it is known to be well-formed.
    enum class BeforeChecked : std::uint8_t {
        Nothing,
        Everything, ///< what came before a fault stays
        Undoable    ///< the same if all of it can be undone
    };
    [[nodiscard]] virtual BeforeChecked beforeChecked() const { return BeforeChecked::Nothing; }
    /// Undoes everything that was taken and told since the parse began, which begins anew without
    /// this object.
    virtual void undo() {}

protected:
    ~DirectContent() = default;
};

} // namespace nu
