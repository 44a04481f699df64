#include "nuXmlParser/stringBuffer.h"

#include "nuXmlParser/parserErrors.h"

TNuXmlStringBuffer::~TNuXmlStringBuffer() = default;

void TNuXmlStringBuffer::AddXmlString(std::u16string_view text, std::int32_t /*ignored*/) {
    AddString(text);
}

void TNuXmlStringBuffer::AddXmlChar(PNuXmlChar unit) { AddChar(*unit); }

void TNuXmlStringBuffer::RemoveNuXmlChar() {
    if (size_ >= cNuXmlCharSize) {
        SetSize(GetSize() - cNuXmlCharSize);
    }
}

NuXmlString TNuXmlStringBuffer::Copy(std::size_t start, std::size_t length) const {
    if (StringType() != cNuXmlStringType) {
        throw host::Exception(nu::messages::copyNotAllowed);
    }
    return {reinterpret_cast<PNuXmlChar>(memory_) + start, length};
}
