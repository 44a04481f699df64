#pragma once

#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

#include "console.h"
#include "documentHandler.h"
#include "event.h"
#include "fault.h"
#include "host/sax/BSaxExt.h"

namespace tool {

/// Receives everything that a reader tells about one document and passes it on to a format.
class EventHandler final : public DocumentHandler<host::IErrorHandler> {
public:
    /// The name is that of the document, for progress. With `showsPlaces` every event gets the
    /// place of the locator.
    EventHandler(EventFormat& format, Console& console, std::string_view name, bool showsPlaces)
        : format_(format), console_(console), name_(name), showsPlaces_(showsPlaces) {}

    /// The fatal error of the document, if there was one.
    [[nodiscard]] const std::optional<Fatality>& fatality() const noexcept { return fatality_; }

    // Content
    void setDocumentLocator(host::ILocator& locator) override;
    void startDocument() override;
    void endDocument() override;
    void EndProlog() override;
    void startPrefixMapping(std::u16string_view prefix, std::u16string_view uri) override;
    void startElement(std::u16string_view uri, std::u16string_view localName,
                      std::u16string_view qName, host::IBufferedAttributes& attributes) override;
    void endElement(std::u16string_view uri, std::u16string_view localName,
                    std::u16string_view qName) override;
    void characters(std::u16string_view text) override;
    void processingInstruction(std::u16string_view target, std::u16string_view data) override;

    // Lexical
    void comment(std::u16string_view text) override;
    void startCDATA() override;
    void endCDATA() override;
    void startDTD(std::u16string_view name, std::u16string_view publicId,
                  std::u16string_view systemId) override;

    // Faults
    void warning(host::ISAXParseError& error) override;
    void error(host::ISAXParseError& error) override;
    void fatalError(host::ISAXParseError& error) override;

private:
    void report(EventKind kind, std::initializer_list<EventField> fields = {},
                host::IBufferedAttributes* attributes = nullptr);
    void reportFault(EventKind kind, host::ISAXParseError& error);
    void passOn(const Event& event);
    void showProgress();

    EventFormat& format_;
    Console& console_;
    std::string_view name_;
    bool showsPlaces_;
    host::Ref<host::ILocator> locator_;
    std::optional<Fatality> fatality_;
    std::uint64_t eventCount_ = 0;
};

} // namespace tool
