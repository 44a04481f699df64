#pragma once

#include "host/runtime/memoryStream.h"

/// A memory stream whose block can be read in place.
///
/// The same storage as the host's, with its zero bytes behind the size; a class of its own so that
/// streams of the common package can be told from the host's.
class NUXML_API TNuMemoryStream : public host::TMemoryStream {
public:
    using host::TMemoryStream::TMemoryStream;
    ~TNuMemoryStream() override;
};
