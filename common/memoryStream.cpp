#include "common/memoryStream.h"

TNuMemoryStream::~TNuMemoryStream() = default;
