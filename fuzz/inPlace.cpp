// Text that is read where it lies, by everything that takes memory: whether it is the last in its
// block or more stands behind it, what comes out is the same, and nobody looks behind its end.
//
// The first byte chooses who reads, the second how, the rest is the text.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <string>
#include <string_view>

#include "host/runtime/memoryStream.h"
#include "host/runtime/unicode.h"
#include "nuXmlDOM.h"
#include "nuXmlParser.h"
#include "nuXmlRecords.h"
#include "support/exactBlock.h"
#include "support/machine.h"
#include "support/record.h"

using fuzz::Record;

namespace {

/// How a text is read.
struct Reading {
    bool isConforming;
    bool isUnchecked; ///< of objects
    TNuConformingOptions options;

    explicit Reading(std::uint8_t bits)
        : isConforming((bits & 1) != 0), isUnchecked((bits & 2) != 0) {
        options.whiteSpace = static_cast<TNuConformingWhiteSpace>((bits >> 2) % 3);
        options.keepLines = (bits & 16) != 0;
        options.namespaces = (bits & 32) != 0;
        options.onFault = (bits & 64) != 0 ? cfPassOn : cfStop;
        options.keepEncodingName = (bits & 128) != 0;
        options.amplificationFrom = 4096;
    }
};

template <class Parse> std::u16string eventsOf(const Reading& how, Parse&& parse) {
    std::u16string all;
    const auto events = Record::of([&](TNuSAXXMLReader& reader, const auto&) {
        if (how.isConforming) {
            reader.SetConforming(how.options);
        }
        parse(reader);
    });
    for (const std::u16string& event : events) {
        all += event;
    }
    return all;
}

/// What `read` puts into an object, as its text.
template <class Read> std::u16string objectOf(const Reading& how, Read&& read) {
    fuzz::registerMachineParts();
    fuzz::Machine machine;
    std::u16string message;
    try {
        read(machine,
             how.isUnchecked ? TNuDeserializeOptions(dsUnchecked) : TNuDeserializeOptions());
    } catch (const host::Exception& failure) {
        message = failure.Message();
    }
    return TNuSerializer(machine).Serialize(u"M") + message;
}

/// What `load` puts into a document.
template <class Load> std::u16string treeOf(Load&& load) {
    const auto document = TNuDOMDocument::Create();
    std::u16string message;
    try {
        load(*document);
    } catch (const host::Exception& failure) {
        message = failure.Message();
    }
    return document->get_xml() + message;
}

// ---- What takes bytes
// ----------------------------------------------------------------------------

using Bytes = std::string_view;

std::u16string bytesToEvents(Bytes bytes, const Reading& how) {
    return eventsOf(how, [&](TNuSAXXMLReader& reader) { reader.ParseBytes(bytes); });
}

/// From a place inside of the memory on, by either parser.
std::u16string streamToEvents(Bytes bytes, const Reading& how) {
    host::TMemoryViewStream stream(bytes);
    stream.SetPosition(bytes.empty() ? 0 : 1);
    return eventsOf(how, [&](TNuSAXXMLReader& reader) {
        reader.SetParserChoice(how.isUnchecked ? TNuSaxParserChoice::LargeStream
                                               : TNuSaxParserChoice::SmallStream);
        reader.Parse(stream);
    });
}

std::u16string bytesToText(Bytes bytes, const Reading& how) {
    host::TMemoryViewStream stream(bytes);
    std::string text;
    TNuConformingStream stage(stream, how.options);
    char block[512];
    while (const std::size_t got = stage.Read(block, sizeof block)) {
        text.append(block, got);
    }
    return host::utf8ToUtf16(text);
}

std::u16string bytesToTree(Bytes bytes, const Reading& how) {
    host::TMemoryViewStream stream(bytes);
    return treeOf([&](TNuDOMDocument& document) {
        if (how.isConforming) {
            document.LoadFromStream(stream, how.options);
        } else {
            document.LoadFromStream(stream);
        }
    });
}

std::u16string utf8ToTree(Bytes bytes, const Reading& how) {
    if (how.isConforming) {
        return NuParseDocument(TNuUtf8Text(bytes), how.options)->get_xml();
    }
    return treeOf([&](TNuDOMDocument& document) { document.loadxml(TNuUtf8Text(bytes)); });
}

std::u16string bytesToObject(Bytes bytes, const Reading& how) {
    host::TMemoryViewStream stream(bytes);
    return objectOf(how, [&](auto& machine, TNuDeserializeOptions options) {
        NuDeSerializeObject(machine, stream, options);
    });
}

std::u16string bytesToRecords(Bytes bytes, const Reading& how) {
    host::TMemoryViewStream stream(bytes);
    nu::RecordOptions options;
    options.reading = how.options;
    std::string text;
    nu::RecordReader records(stream, how.isUnchecked ? u"a/*" : u"r", options);
    while (records.Next()) {
        text += records.Xml();
        records.AppendJson(text);
        if (how.isConforming) {
            text += host::utf16ToUtf8(records.Document().get_xml());
        }
    }
    return host::utf8ToUtf16(text);
}

std::u16string bytesToIndex(Bytes bytes, const Reading&) {
    host::TMemoryViewStream stream(bytes);
    host::TMemoryStream saved;
    nu::RecordIndex::Build(stream, 0, 1).Save(saved);
    saved.SetPosition(0);
    std::string text(static_cast<std::size_t>(saved.GetSize()), '\0');
    saved.Read(text.data(), text.size());
    return host::utf8ToUtf16(text);
}

// ---- What takes UTF-16
// ---------------------------------------------------------------------------

using Text = std::u16string_view;

std::u16string textToEvents(Text text, const Reading& how) {
    // Without "<" it could be the name of a file.
    return !text.starts_with(u'<')
               ? std::u16string()
               : eventsOf(how, [&](TNuSAXXMLReader& reader) { reader.Parse(text); });
}

std::u16string fragmentToEvents(Text text, const Reading& how) {
    return eventsOf(how, [&](TNuSAXXMLReader& reader) { reader.ParseFragment(text); });
}

std::u16string textToTree(Text text, const Reading& how) {
    if (how.isConforming) {
        return NuParseDocument(text, how.options)->get_xml();
    }
    return treeOf([&](TNuDOMDocument& document) { document.loadxml(text); });
}

std::u16string textToNewTree(Text text, const Reading& how) {
    return (how.isConforming ? NuCreateDOMDocument(text, how.options) : NuCreateDOMDocument(text))
        ->get_xml();
}

std::u16string textInsideTree(Text text, const Reading&) {
    return treeOf([&](TNuDOMDocument& document) {
        document.loadxml(u"<a/>");
        document.get_documentElement()->set_innerxml(text);
    });
}

std::u16string textToObject(Text text, const Reading& how) {
    return objectOf(how, [&](auto& machine, TNuDeserializeOptions options) {
        NuDeSerializeObject(machine, text, options);
    });
}

// ---- All of them
// ---------------------------------------------------------------------------------

constexpr std::u16string (*byteReaders[])(Bytes bytes, const Reading& how) = {
    bytesToEvents, streamToEvents, bytesToText,    bytesToTree,
    utf8ToTree,    bytesToObject,  bytesToRecords, bytesToIndex};
constexpr std::u16string (*textReaders[])(Text text, const Reading& how) = {
    textToEvents, fragmentToEvents, textToTree, textToNewTree, textInsideTree, textToObject};

/// Reads a text twice.
template <class Unit, class Read>
void check(std::basic_string_view<Unit> text, const Unit* behind, Read read, const Reading& how) {
    const auto outcome = [&](const fuzz::ExactBlock<Unit>& block) {
        try {
            return read(block.text(), how);
        } catch (const host::Exception& failure) {
            return std::u16string(failure.Message());
        }
    };
    if (outcome(fuzz::ExactBlock<Unit>(text)) != outcome(fuzz::ExactBlock<Unit>(text, behind))) {
        std::abort();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2) {
        return 0;
    }
    const Reading how(data[1]);
    const std::string_view bytes(reinterpret_cast<const char*>(data) + 2, size - 2);
    // What would end anything that was left open, and go on with it.
    constexpr const char* behind = "=\"'/>-->]]>?>;x</a>&#65; <r b='1'>&lt;";
    constexpr const char16_t* wideBehind = u"=\"'/>-->]]>?>;x</a>&#65; <r b='1'>&lt;";

    const std::size_t reader = data[0] % (std::size(byteReaders) + std::size(textReaders));
    if (reader < std::size(byteReaders)) {
        check(bytes, behind, byteReaders[reader], how);
    } else {
        check(std::u16string_view(host::utf8ToUtf16(bytes)), wideBehind,
              textReaders[reader - std::size(byteReaders)], how);
    }
    return 0;
}
