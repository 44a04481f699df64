#pragma once

#include <functional>

#include "common/stringStream.h"
#include "host/sax/Sax.h"

class TNuSAXXMLReader;

/// The events of a reader: assign a callable to each that you want to see. An event that is not
/// assigned costs one test.
///
/// An event may be assigned anew at any time but by itself: what it is made of would go while it
/// runs.
///
/// Text comes as a UTF-16 string stream at position 0 that lives during the call. An exception
/// thrown by an event with text arguments becomes a host::ESAXException that names the event; one
/// thrown by any other event goes on as it is.
struct TNuSAXReaderEvents {
    /// How texts come; good during the call.
    using Text = TNuStringStream;
    /// What tells nothing but the reader.
    using Notification = std::function<void(TNuSAXXMLReader& sender)>;
    /// What tells a fault; the error object may be kept in a host::Ref.
    using ErrorEvent = std::function<void(host::ISAXParseError& error)>;

    Notification OnStart;    ///< the parse begins; handlers may still be set
    Notification OnFinished; ///< the parse is over, however it ended

    Notification OnStartDocument; ///< nothing has been reported yet
    Notification OnEndDocument;   ///< the document was read to its end; not after a fatal fault
    Notification OnEndProlog;     ///< everything before the document element has been reported
    /// Also for the XML declaration, whose target is "xml".
    std::function<void(TNuSAXXMLReader& sender, Text& target, Text& data)> OnProcessingInstruction;
    /// Before OnStartElement of the element that declares the prefix; the default namespace has an
    /// empty one.
    std::function<void(TNuSAXXMLReader& sender, Text& prefix, Text& uri)> OnStartPrefixMapping;
    /// Never raised by this reader: a prefix loses its meaning with OnEndElement of the element
    /// that declares it.
    std::function<void(TNuSAXXMLReader& sender, Text& prefix)> OnEndPrefixMapping;
    std::function<void(TNuSAXXMLReader& sender, Text& namespaceUri, Text& localName, Text& qName,
                       host::IAttributes& attributes)>
        /// An element begins. Its attributes are raw and good during the call.
        OnStartElement;
    /// Text between tags, references not expanded. One text may come in several calls.
    std::function<void(TNuSAXXMLReader& sender, Text& text)> OnCharacters;
    std::function<void(TNuSAXXMLReader& sender, Text& namespaceUri, Text& localName, Text& qName)>
        /// An element ends, also one that is a tag by itself. The names are those of the end tag.
        OnEndElement;

    std::function<void(Text& comment)> OnComment; ///< what stands between "<!--" and "-->"
    std::function<void(Text& name, Text& publicId, Text& systemId)>
        OnStartDTD; ///< the name of the document type, and its identifiers or empty texts
    std::function<void()> OnEndDTD;     ///< the document type is over; nothing of it was told
    std::function<void()> OnStartCDATA; ///< the texts that follow stand in a CDATA section
    std::function<void()> OnEndCDATA;   ///< the section is over

    ErrorEvent OnWarning;    ///< the reader forgives something
    ErrorEvent OnError;      ///< a fault after which the parse goes on
    ErrorEvent OnFatalError; ///< a fault that ends the parse; it is thrown after this
};
