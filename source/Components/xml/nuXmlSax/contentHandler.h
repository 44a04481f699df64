#pragma once

#include "host/sax/BSax.h"

/// A content handler that also wants to know where the prolog ends.
class NUXML_API INuSaxContentHandler : public host::IBufferedContentHandler {
public:
    using Base = host::IBufferedContentHandler;
    static constexpr host::InterfaceId Id{0x2D7745B0C6E84F0A, 0x9C11E2A470B35D01};

    /// Everything before the document element has been reported.
    virtual void EndProlog() = 0;
};
