#pragma once

#include "host/runtime/stream.h"

namespace tool {

/// How the text of a document stands on its lines, so that a changed one can be written the same
/// way.
struct SourceLayout {
    bool hasLines = false;        ///< the last end tag stands on a line of its own
    bool endsLinesWithCR = false; ///< "\r\n" instead of "\n"
    bool endsWithLine = false;    ///< the last line ends as well
};

/// Reads a stream from its start to its end and leaves it at its start.
SourceLayout layoutOf(host::TStream& stream);

} // namespace tool
