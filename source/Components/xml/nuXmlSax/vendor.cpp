#include "nuXmlSax/vendor.h"

#include "nuXmlSax/reader.h"

TNuSAXReaderVendor::~TNuSAXReaderVendor() = default;

host::Ref<host::IBufferedXMLReader> TNuSAXReaderVendor::BufferedXMLReader() {
    return TNuSAXXMLReader::CreateCounted();
}
