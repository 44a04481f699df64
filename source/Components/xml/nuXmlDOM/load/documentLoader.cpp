#include "nuXmlDOM/load/documentLoader.h"

#include <exception>
#include <string>

#include "common/stringStream.h"
#include "host/com/implements.h"
#include "host/sax/Sax.h"
#include "nuXmlDOM/core/nodeKinds.h"
#include "nuXmlDOM/load/directLoader.h"
#include "nuXmlDOM/load/loadReport.h"
#include "nuXmlDOM/load/saxToDomHandler.h"
#include "nuXmlParser/parserErrors.h"
#include "nuXmlSax/reader.h"

namespace {

/// Puts what a reader complains about into a report.
class ReportingHandler final : public host::Implements<host::IErrorHandler> {
public:
    ReportingHandler(TNuLoadReport& report, const TNuSaxToDomHandler& builder,
                     std::u16string_view file)
        : report_(report), builder_(builder), file_(file) {}

    void warning(host::ISAXParseError& error) override { add(fsWarning, error); }
    void error(host::ISAXParseError& error) override { add(fsError, error); }
    void fatalError(host::ISAXParseError& error) override { add(fsFatal, error); }

private:
    void add(TNuFaultSeverity severity, host::ISAXParseError& error) {
        // What the tree refused comes without a place, but the builder knows it.
        const bool isPlaced = error.getLineNumber() > 0;
        report_.Add({severity, error.getMessage(), file_,
                     isPlaced ? error.getLineNumber() : builder_.FailureLine(),
                     isPlaced ? error.getColumnNumber() : builder_.FailureColumn()});
    }

    TNuLoadReport& report_;
    const TNuSaxToDomHandler& builder_;
    std::u16string file_;
};

/// Builds below `parent` what `parse` makes a reader read.
template <class Parse>
void build(TNuDOMDocument& document, TNuDOMNode& parent, const nu::Loading& loading,
           Parse&& parse) {
    // 1. The reader, and what makes nodes of what it tells.
    TNuSAXXMLReader reader;
    const auto handler = host::makeRef<TNuSaxToDomHandler>(reader, document, &parent);
    reader.setContentHandler(handler);
    reader.setLexicalHandler(handler);
    reader.SetLimits(document.Limits().Reading);
    if (loading.options != nullptr) {
        reader.SetConforming(*loading.options);
    }
    // 2. Who hears of faults.
    if (loading.report != nullptr) {
        loading.report->Clear();
        reader.setErrorHandler(
            host::makeRef<ReportingHandler>(*loading.report, *handler, loading.file));
    }
    // 3. The parse. What leaves it tells the file.
    try {
        parse(reader, *handler);
    } catch (const ENuSaxHandledAbort&) {
        // The reader's abort says nothing; what the tree did not take does.
        if (handler->Failure()) {
            std::rethrow_exception(handler->Failure());
        }
        throw;
    } catch (ENuSaxFatalError& fault) {
        fault.SetFile(loading.file);
        // The character input throws an end that it did not expect without telling anybody.
        if (loading.report != nullptr && loading.report->Fatal() == nullptr) {
            loading.report->Add(
                {fsFatal, fault.Message(), loading.file, fault.Line(), fault.Column()});
        }
        throw;
    }
}

} // namespace

void nu::loadStream(TNuDOMDocument& document, host::TStream& stream, const Loading& loading) {
    build(document, document, loading, [&](TNuSAXXMLReader& reader, TNuSaxToDomHandler& handler) {
        // Nobody else listens to a whole document, so what is plain goes straight into the
        // tree.
        nu::DirectLoader loader(handler, document, loading.report != nullptr);
        reader.setDirectContent(&loader);
        reader.Parse(stream);
    });
}

void nu::loadText(TNuDOMDocument& document, std::u16string_view xml, const Loading& loading) {
    document.Clear();
    TNuStringStream stream(xml);
    loadStream(document, stream, loading);
}

void TNuDOMNode::set_innerxml(std::u16string_view xml) {
    if (xml.empty()) {
        return;
    }
    TNuDOMDocument& document = *OwnerDocument();
    if (this == &document) {
        TNuStringStream stream(xml);
        nu::loadStream(document, stream, {});
        return;
    }
    build(document, *this, {}, [&](TNuSAXXMLReader& reader, TNuSaxToDomHandler& /*handler*/) {
        if (nu::is<TNuDOMElement>(*this)) {
            reader.ParseFragment(xml);
        } else {
            TNuStringStream stream(xml);
            reader.Parse(stream);
        }
    });
}
