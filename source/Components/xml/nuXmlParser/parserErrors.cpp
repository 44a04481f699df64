#include "nuXmlParser/parserErrors.h"

ENuSaxFatalError::~ENuSaxFatalError() = default;
ENuSaxHandledAbort::~ENuSaxHandledAbort() = default;
