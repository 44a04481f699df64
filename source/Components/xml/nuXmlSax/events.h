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
    using Text = TNuStringStream;
    using Notification = std::function<void(TNuSAXXMLReader& sender)>;
    using ErrorEvent = std::function<void(host::ISAXParseError& error)>;

    Notification OnStart;    ///< the parse begins; handlers may still be set
    Notification OnFinished; ///< the parse is over, however it ended

    Notification OnStartDocument;
    Notification OnEndDocument;
    Notification OnEndProlog;
    std::function<void(TNuSAXXMLReader& sender, Text& target, Text& data)> OnProcessingInstruction;
    std::function<void(TNuSAXXMLReader& sender, Text& prefix, Text& uri)> OnStartPrefixMapping;
    std::function<void(TNuSAXXMLReader& sender, Text& prefix)> OnEndPrefixMapping;
    std::function<void(TNuSAXXMLReader& sender, Text& namespaceUri, Text& localName, Text& qName,
                       host::IAttributes& attributes)>
        OnStartElement;
    std::function<void(TNuSAXXMLReader& sender, Text& text)> OnCharacters;
    std::function<void(TNuSAXXMLReader& sender, Text& namespaceUri, Text& localName, Text& qName)>
        OnEndElement;

    std::function<void(Text& comment)> OnComment;
    std::function<void(Text& name, Text& publicId, Text& systemId)> OnStartDTD;
    std::function<void()> OnEndDTD;
    std::function<void()> OnStartCDATA;
    std::function<void()> OnEndCDATA;

    ErrorEvent OnWarning;
    ErrorEvent OnError;
    ErrorEvent OnFatalError;
};
