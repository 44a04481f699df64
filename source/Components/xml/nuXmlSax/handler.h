#pragma once

#include <atomic>
#include <cstdint>

#include "host/com/implements.h"
#include "host/runtime/export.h"

class TNuSAXXMLReader;
struct TNuSAXReaderEvents;

/// The base of handlers and attribute lists that belong to a reader: counts references from 0 on
/// and goes with the last one.
///
/// The reader must outlive the calls that need it; the object does not own it.
class NUXML_API TNuSAXHandler {
public:
    explicit TNuSAXHandler(TNuSAXXMLReader& reader) noexcept : reader_(&reader) {}
    TNuSAXHandler(const TNuSAXHandler&) = delete;
    TNuSAXHandler& operator=(const TNuSAXHandler&) = delete;
    /// Throws host::Exception "Dangling RefCount n" when references are left, unless another
    /// exception is already on its way.
    virtual ~TNuSAXHandler() noexcept(false);

    /// The reader that it was made for.
    [[nodiscard]] TNuSAXXMLReader& Reader() const noexcept { return *reader_; }

    /// Takes a reference; gives the new count.
    virtual std::int32_t _AddRef() noexcept;
    /// Drops a reference; gives the new count. At 0 the object is gone.
    virtual std::int32_t _Release() noexcept;
    /// The references that are held now; for diagnosis, as others may take and drop some meanwhile.
    [[nodiscard]] std::int32_t RefCount() const noexcept {
        return count_.load(std::memory_order_relaxed);
    }
    /// Destroys an object that nobody holds; throws, and destroys nothing, while somebody does.
    void Free();

    /// \cond internal
    /// The reader has no use for it any more, and may go before it does: it tells nobody anything.
    void leaveReader() noexcept { reader_ = nullptr; }
    /// \endcond

protected:
    /// The events of the reader; none of them is assigned when it has left the reader.
    [[nodiscard]] const TNuSAXReaderEvents& events() const noexcept;

private:
    NUXML_LOCAL void checkNotHeld() const;

    TNuSAXXMLReader* reader_;
    std::atomic<std::int32_t> count_ = 0;
};

/// A TNuSAXHandler that offers the given interfaces.
template <class... Interfaces> class TNuSAXHandlerOf : public Interfaces..., public TNuSAXHandler {
public:
    using TNuSAXHandler::TNuSAXHandler;

    /// See host::IUnknown::QueryInterface; offers the interfaces that the template names, in that
    /// order.
    host::ResultCode QueryInterface(const host::InterfaceId& id, void** object) noexcept override {
        *object = host::findInterface<Interfaces...>(this, id);
        if (*object == nullptr) {
            return host::resultNoInterface;
        }
        _AddRef();
        return host::resultOk;
    }
    std::int32_t _AddRef() noexcept override { return TNuSAXHandler::_AddRef(); }
    std::int32_t _Release() noexcept override { return TNuSAXHandler::_Release(); }
};
