#include "host/sax/Sax.h"

namespace host {

ESAXException::~ESAXException() = default;
ESAXNotSupportedException::~ESAXNotSupportedException() = default;
ESAXNotRecognizedException::~ESAXNotRecognizedException() = default;

} // namespace host
