#include <algorithm>
#include <memory>
#include <new>
#include <utility>

#include "host/com/implements.h"
#include "host/runtime/memoryStream.h"
#include "host/sax/SaxHelpers.h"
#include "nuXmlParser/conforming/conformingPass.h"
#include "nuXmlParser/conforming/conformingStream.h"
#include "nuXmlParser/conforming/conformingSupply.h"
#include "nuXmlParser/conforming/streamText.h"
#include "nuXmlParser/namespaceNames.h"
#include "nuXmlParser/textMemory.h"
#include "nuXmlSax/directContent.h"
#include "nuXmlSax/plainEvents.h"
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

/// Notices that there was anything to tell.
class FaultNoticer final : public host::Implements<host::IErrorHandler> {
public:
    void warning(host::ISAXParseError& /*error*/) override { hasHeard = true; }
    void error(host::ISAXParseError& /*error*/) override { hasHeard = true; }
    void fatalError(host::ISAXParseError& /*error*/) override { hasHeard = true; }

    bool hasHeard = false;
};

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

/// Checks a document in memory and reads it in the same pass. False, with nothing done, where that
/// cannot be.
bool TNuSAXXMLReader::parseInOnePass(host::TStream& stream) {
    using nu::DirectContent;
    // UTF-16 has to become UTF-8 first.
    if (nu::isWideText(stream)) {
        return false;
    }
    if (directContent_ != nullptr) {
        switch (directContent_->beforeChecked()) {
        case DirectContent::BeforeChecked::Nothing:
            return false;
        case DirectContent::BeforeChecked::Everything:
            return readInOnePass(stream);
        case DirectContent::BeforeChecked::Undoable:
            if (takeInOnePass(stream)) {
                return true;
            }
        }
    }
    // What was undone is told.
    return directContent_ == nullptr && tellInOnePass(stream);
}

/// Tells events, up to a fault where there is one.
bool TNuSAXXMLReader::tellInOnePass(host::TStream& stream) {
    // Behind a fault that is passed on nothing is checked.
    if (conforming_->onFault == cfPassOn) {
        return false;
    }
    nu::PlainEvents events(*this);
    directContent_ = &events;
    const auto endPass = [&] { directContent_ = nullptr; };
    try {
        const bool isRead = readInOnePass(stream);
        endPass();
        return isRead;
    } catch (...) {
        endPass();
        throw;
    }
}

/// Lets content be taken up to a fault, behind which all is told where faults are passed on.
bool TNuSAXXMLReader::readInOnePass(host::TStream& stream) {
    nu::ConformingSupply stage(*nu::restInMemory(stream), *conforming_);
    if (!stage.open()) {
        return false;
    }
    stage.onPassedFault = [this](const ENuXmlFault& fault) {
        tellFault(fault, &host::IErrorHandler::error);
    };
    stage_ = &stage;
    const auto endPass = [&] {
        stage_ = nullptr;
        sourceForm_ = stage.form();
    };
    try {
        scanChecked(stream, stage);
    } catch (...) {
        endPass();
        throw;
    }
    endPass();
    return true;
}

/// Lets a document be taken whose content can be undone. Where anything is wrong it is, and what is
/// wrong is told with the events.
bool TNuSAXXMLReader::takeInOnePass(host::TStream& stream) {
    // 1. Nobody hears of anything yet.
    const auto noticer = host::makeRef<FaultNoticer>();
    const host::Ref<host::IErrorHandler> heard = std::exchange(errorHandler_, noticer.get());
    const std::int32_t depthBefore = depth_;
    const auto endPass = [&] {
        stage_ = nullptr;
        errorHandler_ = heard;
    };
    try {
        // 2. The pass, up to a fault.
        TNuConformingOptions options = *conforming_;
        options.onFault = cfStop;
        nu::ConformingSupply stage(*nu::restInMemory(stream), options);
        if (!stage.open()) {
            endPass();
            return false;
        }
        stage_ = &stage;
        scanChecked(stream, stage);
        sourceForm_ = stage.form();
    } catch (const std::bad_alloc&) {
        endPass();
        throw;
    } catch (...) {
        noticer->hasHeard = true; // it comes again
    }
    endPass();

    // 3. As if nothing had been.
    if (noticer->hasHeard) {
        std::exchange(directContent_, nullptr)->undo();
        depth_ = depthBefore;
        namespaces_.Clear();
        enterStage();
    }
    return !noticer->hasHeard;
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
