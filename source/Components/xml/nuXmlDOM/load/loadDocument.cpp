#include <memory>

#include "common/memoryStream.h"
#include "common/utf8.h"
#include "host/com/streamAdapter.h"
#include "host/runtime/exception.h"
#include "host/runtime/fileStream.h"
#include "host/runtime/format.h"
#include "nuXmlDOM/core/document.h"
#include "nuXmlDOM/core/domErrors.h"
#include "nuXmlDOM/core/domMessages.h"
#include "nuXmlDOM/core/nodeAccess.h"
#include "nuXmlDOM/load/loading.h"
#include "nuXmlDOM/load/saxToDomHandler.h"
#include "nuXmlParser/parserErrors.h"
#include "nuXmlSax/reader.h"

namespace {

/// Builds below `parent` what `parse` makes a reader read.
template <class Parse> void build(TNuDOMDocument& document, TNuDOMNode& parent, Parse&& parse) {
    TNuSAXXMLReader reader;
    const auto handler = host::makeRef<TNuSaxToDomHandler>(reader, document, &parent);
    reader.setContentHandler(handler);
    reader.setLexicalHandler(handler);
    try {
        parse(reader);
    } catch (const ENuSaxHandledAbort&) {
        // The reader's abort says nothing; what the tree did not take does.
        if (handler->Failure()) {
            std::rethrow_exception(handler->Failure());
        }
        throw;
    }
}

/// Everything from the position of the stream on.
void copyContents(host::IStream& source, host::TStream& target) {
    constexpr std::size_t blockSize = 64 * 1024;
    const auto block = std::make_unique<std::byte[]>(blockSize);
    for (;;) {
        std::size_t count = 0;
        if (source.Read(block.get(), blockSize, count) < 0) {
            throw ENuDomException(nu::cNoStreamContents);
        }
        if (count == 0) {
            return;
        }
        target.WriteBuffer(block.get(), count);
    }
}

} // namespace

void TNuDOMNode::set_innerxml(std::u16string_view xml) {
    if (xml.empty()) {
        return;
    }
    build(*OwnerDocument(), *this, [&](TNuSAXXMLReader& reader) {
        if (nu::NodeAccess::is<TNuDOMElement>(*this)) {
            reader.ParseFragment(xml);
        } else {
            TNuStringStream stream(xml);
            reader.Parse(stream);
        }
    });
}

void TNuDOMDocument::set_innerxml(std::u16string_view xml) {
    Clear();
    TNuDOMNode::set_innerxml(xml);
}

bool TNuDOMDocument::loadxml(std::u16string_view xml) {
    set_innerxml(xml);
    return true;
}

bool TNuDOMDocument::LoadFromStream(host::TStream& stream) {
    build(*this, *this, [&stream](TNuSAXXMLReader& reader) { reader.Parse(stream); });
    return true;
}

bool TNuDOMDocument::loadFromStream(host::IStream* stream) {
    if (stream == nullptr) {
        throw ENuDomException(nu::cNoStreamContents);
    }
    TNuMemoryStream contents;
    copyContents(*stream, contents);
    contents.Seek(0, host::SeekOrigin::Beginning);
    return LoadFromStream(contents);
}

bool TNuDOMDocument::LoadFromFile(const std::filesystem::path& fileName) {
    // A file that cannot be looked at is left to the stream, which says why.
    std::error_code error;
    if (!std::filesystem::exists(fileName, error) && !error) {
        throw host::EReadError(host::formatMessage(nu::cNoFile, {NuFromUtf8(fileName.string())}));
    }
    host::TFileStream file(fileName, host::fmOpenRead | host::fmShareDenyNone);
    return LoadFromStream(file);
}

bool TNuDOMDocument::load(const host::DOMSource& source) {
    if (const auto* text = std::get_if<std::u16string_view>(&source)) {
        return text->starts_with(cNuLt) ? loadxml(*text)
                                        : LoadFromFile(host::TFileStream::systemPath(*text));
    }
    if (const auto* stream = std::get_if<host::TStream*>(&source)) {
        if (*stream == nullptr) {
            throw ENuDomException(nu::cNoStreamContents);
        }
        return LoadFromStream(**stream);
    }
    return loadFromStream(std::get<host::IStream*>(source));
}

// Loading functions

NuRef<TNuDOMDocument> NuCreateDOMDocument(std::u16string_view xml) {
    NuRef<TNuDOMDocument> document = TNuDOMDocument::Create();
    document->set_innerxml(xml);
    return document;
}

namespace {

host::Ref<host::IDOMDocument> interfaceOf(const NuRef<TNuDOMDocument>& document) {
    return document.as<host::IDOMDocument>();
}

} // namespace

host::Ref<host::IDOMDocument> NuGetDOMDocument(std::u16string_view xml) {
    return interfaceOf(NuCreateDOMDocument(xml));
}

host::Ref<host::IDOMDocument> NuGetDOMDocument(host::TStream* stream, bool freeStream) {
    if (stream == nullptr) {
        throw ENuDomException(nu::cNoStreamContents);
    }
    const std::unique_ptr<host::TStream> owned(freeStream ? stream : nullptr);
    const NuRef<TNuDOMDocument> document = TNuDOMDocument::Create();
    document->LoadFromStream(*stream);
    return interfaceOf(document);
}

host::Ref<host::IDOMDocument> NuGetDOMDocument(const std::filesystem::path& fileName,
                                               std::uint16_t mode) {
    host::TFileStream file(fileName, mode);
    return NuGetDOMDocument(&file, false);
}
