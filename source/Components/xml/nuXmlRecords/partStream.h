#pragma once

#include <cstdint>

#include "host/runtime/stream.h"
#include "nuXmlRecords/recordShare.h"
#include "nuXmlRecords/tagFinder.h"

namespace nu {

/// A document that begins in the middle of another one: what has to be known there, and the bytes
/// from there on.
class PartStream final : public host::TStream {
public:
    /// \param finder looks through the bytes as they are read; null where nobody has to
    PartStream(host::TStream& file, const RecordStart& start, TagFinder* finder)
        : file_(file), start_(start), finder_(finder) {
        file_.SetPosition(start.position);
    }

    std::size_t Read(void* buffer, std::size_t count) override;
    std::size_t Write(const void* buffer, std::size_t count) override;
    /// Tells where it stands and goes nowhere: throws host::EStreamError for anything else.
    std::int64_t Seek(std::int64_t offset, host::SeekOrigin origin) override;

private:
    host::TStream& file_;
    const RecordStart& start_;
    TagFinder* finder_;
    std::int64_t position_ = 0;
};

} // namespace nu
