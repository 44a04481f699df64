#pragma once

#include <cstdint>

#include "host/runtime/export.h"

/// What an application's runtime offers: streams, exceptions, variants, described classes, and the
/// interfaces of the document object model and of SAX2, with the registries of their vendors.
namespace host {

/// Names an interface: 128 bits, unique by choice of its author.
struct InterfaceId {
    std::uint64_t high; ///< the first 64 bits
    std::uint64_t low;  ///< the last 64 bits

    friend constexpr bool operator==(const InterfaceId&, const InterfaceId&) = default;
};

/// The outcome of an operation that must not throw: 0 or above is success.
using ResultCode = std::int32_t;

/// A success.
constexpr ResultCode resultOk = 0;
/// A success with nothing to give.
constexpr ResultCode resultFalse = 1;
/// The object does not offer the interface that it was asked for.
constexpr ResultCode resultNoInterface = static_cast<ResultCode>(0x80004002U);
/// A failure that has no code of its own; the error information says what happened.
constexpr ResultCode resultUnexpected = static_cast<ResultCode>(0x8000FFFFU);
/// There was no memory for what was to be done.
constexpr ResultCode resultOutOfMemory = static_cast<ResultCode>(0x8007000EU);

/// What every interface offers: counted references and the way to the object's other interfaces.
///
/// Each interface declares its own `Id` and, as `Base`, the interface that it extends. Hold
/// interfaces in host::Ref, which counts by itself.
class NUXML_API IUnknown {
public:
    static constexpr InterfaceId Id{0x0000000000000000, 0xC000000000000046};

    /// Stores a counted reference to the interface `id` of the same object in `*object`, or null
    /// when the object does not offer it.
    virtual ResultCode QueryInterface(const InterfaceId& id, void** object) noexcept = 0;
    /// Takes a reference; gives the new count.
    virtual std::int32_t _AddRef() noexcept = 0;
    /// Drops a reference; gives the new count. The object may be gone afterwards.
    virtual std::int32_t _Release() noexcept = 0;

protected:
    IUnknown() = default;
    IUnknown(const IUnknown&) = default;
    IUnknown& operator=(const IUnknown&) = default;
    ~IUnknown() = default;
};

} // namespace host
