#include "nuXmlParser/conforming/xmlFault.h"

ENuXmlFault::~ENuXmlFault() = default;
