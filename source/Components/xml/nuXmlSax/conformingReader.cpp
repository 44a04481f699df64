#include <algorithm>
#include <memory>

#include "host/runtime/memoryStream.h"
#include "host/sax/SaxHelpers.h"
#include "nuXmlParser/conforming/conformingPass.h"
#include "nuXmlParser/conforming/conformingStream.h"
#include "nuXmlParser/namespaceNames.h"
#include "nuXmlParser/textMemory.h"
#include "nuXmlSax/reader.h"

/// \file
/// The reader behind the conforming stage.

namespace {

nu::SpaceStack::Always spaceKeptBy(TNuConformingWhiteSpace whiteSpace) noexcept {
    switch (whiteSpace) {
    case cwReader:
        return nu::SpaceStack::Always::Nothing;
    case cwInline:
        return nu::SpaceStack::Always::Inline;
    case cwAll:
        break;
    }
    return nu::SpaceStack::Always::All;
}

} // namespace

/// What the scanner does otherwise behind the stage.
void TNuSAXXMLReader::enterStage() {
    isBehindStage_ = true;
    spaceKept_ = spaceKeptBy(conforming_->whiteSpace);
    namespaces_.compareExactly(true);
    namespaces_.AddNamespace(0, nu::xmlPrefix, nu::xmlNamespace);
}

void TNuSAXXMLReader::leaveStage() noexcept {
    isBehindStage_ = false;
    spaceKept_ = nu::SpaceStack::Always::Nothing;
    namespaces_.compareExactly(false);
}

void TNuSAXXMLReader::tellFault(const ENuXmlFault& fault,
                                void (host::IErrorHandler::*tell)(host::ISAXParseError&)) {
    if (errorHandler_) {
        (errorHandler_.get()->*tell)(*host::makeRef<host::TSAXParseError>(
            fault.Message(), u"", u"", static_cast<std::int32_t>(fault.Line()),
            static_cast<std::int32_t>(fault.Column())));
    }
}

void TNuSAXXMLReader::parseBehindStage(host::TStream& stream) {
    sourceForm_ = {};
    enterStage();
    if (isLarge(&stream)) {
        parseInBlocks(stream);
        return;
    }
    // A stream in memory is read in place, any other is brought there.
    if (dynamic_cast<host::TCustomMemoryStream*>(&stream) != nullptr) {
        parseInMemory(stream);
        return;
    }
    const std::int64_t size = std::max<std::int64_t>(stream.GetSize() - stream.GetPosition(), 0);
    const nu::TextMemory bytes = nu::TextMemory::read(stream, static_cast<std::size_t>(size));
    host::TMemoryViewStream memory(bytes.bytes());
    parseInMemory(memory);
}

void TNuSAXXMLReader::parseInMemory(host::TStream& stream) {
    const std::int64_t start = stream.GetPosition();
    if (parseInOnePass(stream)) {
        stream.Seek(0, host::SeekOrigin::End);
        return;
    }
    if (!parseWhole(stream)) {
        stream.SetPosition(start);
        parseInBlocks(stream);
    }
}

/// Reads a document that is known to be well-formed by then: the source's own bytes if there was
/// nothing to change. False, with nothing done, where it is not well-formed.
bool TNuSAXXMLReader::parseWhole(host::TStream& stream) {
    nu::ConformingPass pass(stream, *conforming_, nu::ReaderForm::Told);
    std::string_view text;
    try {
        text = pass.readWhole();
    } catch (const ENuXmlFault&) {
        return false;
    }
    sourceForm_ = pass.form();
    host::TMemoryViewStream document(text);
    scanSmall(nullptr, &document);
    return true;
}

/// Reads what the stage gives as it gives it, up to a fault, and on where faults are passed on.
void TNuSAXXMLReader::parseInBlocks(host::TStream& stream) {
    auto pass = std::make_unique<nu::ConformingPass>(stream, *conforming_, nu::ReaderForm::Told);
    pass->onPassedFault = [this](const ENuXmlFault& fault) {
        tellFault(fault, &host::IErrorHandler::error);
    };
    TNuConformingStream document(std::move(pass));
    try {
        scanLarge(nullptr, &document);
    } catch (...) {
        sourceForm_ = document.Form();
        throw;
    }
    sourceForm_ = document.Form();
}
