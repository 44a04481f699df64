#pragma once

#include <cstdint>

#include "host/runtime/stream.h"
#include "nuXmlDOM/core/node.h"
#include "nuXmlDOM/write/outputTarget.h"

class TNuDOMDocument;

namespace nu {

/// The number of elements around a node.
[[nodiscard]] std::int64_t depthOf(const TNuDOMNode& node) noexcept;

/// Throws host::EInvalidCast for the one node that cannot be written: a CDATA section that is
/// formatted must stand in an element. Called before anything is written.
void checkWritable(const TNuDOMNode& node, bool formatted);

/// How a node is written.
struct WriteOptions {
    bool formatted = false;
    /// Whether it begins with a byte-order mark.
    bool marked = false;
    /// The depth that is not indented.
    std::int64_t baseLevel = 0;
    /// Whether another parser reads the same content, see ExactCharacters.
    bool keepsContent = false;
    /// The blanks of each level, where it is formatted.
    std::uint8_t indentation = 2;
};

/// Writes a node that can be written.
template <class Unit>
void writeNode(const TNuDOMNode& node, OutputTarget<Unit>& target, const WriteOptions& options);

extern template void writeNode(const TNuDOMNode&, OutputTarget<char>&, const WriteOptions&);
extern template void writeNode(const TNuDOMNode&, OutputTarget<char16_t>&, const WriteOptions&);

/// Writes a document as bytes of a code page of single bytes. Throws host::EConvertError where a
/// name or an instruction has a character that the page lacks; what stands before it is written.
void writeInCodePage(const TNuDOMDocument& document, OutputTarget<char>& target,
                     const WriteOptions& options, std::uint32_t codePage);

/// Writes a node as UTF-16 at the position of a stream. A document that goes to the start of a file
/// begins with a byte-order mark in any case.
void saveWide(const TNuDOMNode& node, host::TStream& stream, WriteOptions options);

} // namespace nu
