// All messages in one translation unit. They share a namespace, and each layer includes but its
// own, so two of one name would become one while the libraries are linked, without a word: here
// they do not compile.

#include "nuObj2Xml/messages.h"
#include "nuXmlDOM/core/domMessages.h"
#include "nuXmlDOM/path/pathMessages.h"
#include "nuXmlParser/conforming/conformingMessages.h"
#include "nuXmlParser/conversionErrors.h"
#include "nuXmlParser/parserErrors.h"
#include "nuXmlRecords/recordMessages.h"
#include "nuXmlSax/messages.h"
