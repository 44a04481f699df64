#include "nuXmlParser/conforming/conformingPass.h"

#include <algorithm>
#include <limits>

#include "common/codePage.h"
#include "nuXmlParser/conforming/streamText.h"
#include "nuXmlParser/textDecoder.h"

namespace nu {

namespace {

constexpr std::string_view mark = "\xEF\xBB\xBF";
constexpr std::size_t everything = std::numeric_limits<std::size_t>::max();

ByteSource byteSourceOf(std::optional<std::string_view> memory, host::TStream& stream) {
    return memory ? ByteSource(*memory) : ByteSource(stream, ConformingPass::blockSize);
}

} // namespace

ConformingPass::ConformingPass(host::TStream& stream, const TNuConformingOptions& options,
                               ReaderForm reader)
    : options_(options), reader_(reader), source_(ByteSource(std::string_view())) {
    if (isWideText(stream) && options_.encoding.empty()) {
        options_.encoding = "UTF-16LE";
        options_.keepEncodingName = true;
    }
    const std::optional<std::string_view> memory = restInMemory(stream);
    if (memory) {
        memory_ = *memory;
        stream.Seek(0, host::SeekOrigin::End);
    }
    source_ = SourceText(byteSourceOf(memory, stream));
}

ConformingPass::~ConformingPass() = default;

/// What the source throws when its first bytes are read is thrown by whoever reads first.
void ConformingPass::open() {
    if (!normaliser_) {
        source_.open(options_.encoding);
        normaliser_.emplace(source_, output_, options_, reader_, form_);
        output_.append(mark);
    }
}

std::string_view ConformingPass::readWhole() {
    open();
    normaliser_->run(everything);
    TextStack& texts = normaliser_->texts();
    noteForm();
    if (source_.staysInPlace() && !texts.isChanged() && isReadAsUtf8(memory_)) {
        return memory_;
    }
    texts.write();
    return output_.text();
}

void ConformingPass::check() {
    output_.discard();
    open();
    normaliser_->run(everything);
    noteForm();
}

std::optional<std::string_view> ConformingPass::readElement(ElementWatch& watch,
                                                            std::size_t limit) {
    if (!normaliser_) {
        open();
        output_.setLimit(limit);
        source_.limitWindow(limit);
        normaliser_->setWatch(watch);
    }
    output_.take(output_.text().size());
    const bool isTaken = normaliser_->run(everything);
    if (form_.encoding.empty() || !isTaken) {
        noteForm();
    }
    if (output_.text().size() > limit) {
        throw OutputLimit();
    }
    return isTaken ? std::optional(output_.text()) : std::nullopt;
}

/// Whether a reader that is given these bytes takes them for UTF-8, which they are.
bool ConformingPass::isReadAsUtf8(std::string_view bytes) const {
    return source_.hasMark() || NuGetSystemCodePage() == cNuCodePageUtf8 ||
           declaresUtf8(bytes.substr(0, bytes.find('>') + 1));
}

void ConformingPass::noteForm() {
    source_.describe(form_);
    form_.isChanged = normaliser_ && normaliser_->texts().isChanged();
}

std::size_t ConformingPass::read(char* target, std::size_t count) {
    while (output_.text().empty() && !hasEnded_ && !failure_) {
        fillOutput();
    }
    const std::string_view text = output_.text().substr(0, count);
    if (text.empty() && failure_) {
        std::rethrow_exception(failure_);
    }
    text.copy(target, text.size());
    output_.take(text.size());
    return text.size();
}

void ConformingPass::fillOutput() {
    // 1. Behind a fault that is passed on, everything as it comes.
    if (passedFault_) {
        passedText_.clear();
        hasEnded_ = !source_.passOn(nullptr, passedText_);
        output_.append(passedText_);
        return;
    }
    // 2. The next block.
    try {
        open();
        hasEnded_ = !normaliser_->run(blockSize);
        normaliser_->texts().write();
    } catch (const ENuXmlFault& fault) {
        if (options_.onFault == cfPassOn && normaliser_) {
            passOn(fault);
        } else {
            failure_ = std::current_exception();
        }
    } catch (...) {
        failure_ = std::current_exception();
    }
    // 3. What came before a fault still goes out.
    if (failure_ && normaliser_) {
        normaliser_->texts().write();
    }
    noteForm();
}

void ConformingPass::passOn(const ENuXmlFault& fault) {
    TextStack& texts = normaliser_->texts();
    texts.leaveAll();
    passedFault_ = fault;
    passedText_.clear();
    source_.passOn(texts.notWritten(), passedText_);
    output_.append(passedText_);
    if (onPassedFault) {
        onPassedFault(fault);
    }
}

} // namespace nu
