#pragma once

#include "host/sax/SaxHelpers.h"

/// The vendor under which applications find the reader: "Keldon". It offers the buffered form only.
class NUXML_API TNuSAXReaderVendor final : public host::TSAXVendor {
public:
    ~TNuSAXReaderVendor() override;

    [[nodiscard]] host::SAXString Description() const override { return u"Keldon"; }
    host::Ref<host::IXMLReader> XMLReader() override { return {}; }
    host::Ref<host::IBufferedXMLReader> BufferedXMLReader() override;
};
