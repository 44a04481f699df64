#pragma once

#include <memory>

#include "host/com/ref.h"
#include "host/com/stream.h"
#include "host/runtime/stream.h"

/// \file
/// The two kinds of streams for each other. A failure keeps its message both ways, and its code
/// where it has one.

namespace host {

/// `stream` as an interface. The stream stays the caller's and must outlive the interface; its
/// exceptions become codes with error information.
NUXML_API Ref<IStream> makeStreamInterface(TStream& stream);
/// The same for a stream that the interface owns and that goes with its last reference.
NUXML_API Ref<IStream> makeStreamInterface(std::unique_ptr<TStream> stream);

/// A stream interface as a stream; holds a reference to it. Failures are thrown as ESystemError
/// with their code. An interface that claims to have transferred more than it was asked to is taken
/// for broken: EReadError or EWriteError.
class NUXML_API TInterfaceStream final : public TStream {
public:
    /// Throws EInvalidPointer when `stream` is empty.
    explicit TInterfaceStream(Ref<IStream> stream);
    ~TInterfaceStream() override;

    std::size_t Read(void* buffer, std::size_t count) override;
    std::size_t Write(const void* buffer, std::size_t count) override;
    std::int64_t Seek(std::int64_t offset, SeekOrigin origin) override;
    std::int64_t GetSize() override;
    void SetSize(std::int64_t size) override;
    void Flush() override;

private:
    Ref<IStream> stream_;
};

} // namespace host
