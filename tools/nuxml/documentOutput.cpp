#include "documentOutput.h"

#include <filesystem>
#include <string>

#include "arguments.h"
#include "comparingStream.h"
#include "host/runtime/exception.h"
#include "host/runtime/fileReplacement.h"
#include "input.h"
#include "outputStream.h"

namespace tool {

namespace {

/// What speaks against replacing a file by a document; said in any case.
class Objections {
public:
    Objections(Console& console, std::string_view source)
        : console_(console), source_(displayName(source)) {}

    void add(std::string_view text) {
        console_.complain(source_ + ": " + std::string(text));
        any_ = true;
    }
    void addSilently() noexcept { any_ = true; }
    [[nodiscard]] bool any() const noexcept { return any_; }

private:
    Console& console_;
    std::string source_;
    bool any_ = false;
};

} // namespace

std::string_view targetOf(std::string_view source, bool isInPlace,
                          std::optional<std::string_view> given) {
    if (isInPlace && given) {
        throw UsageError("-i and -o exclude each other");
    }
    if (isInPlace && source == standardInput) {
        throw UsageError("-i needs a file");
    }
    return isInPlace ? source : given.value_or(standardInput);
}

void checkReplaced(const Destination& destination) {
    if (destination.source == standardInput || destination.source != destination.target) {
        return;
    }
    std::error_code error;
    if (std::filesystem::is_other(destination.source, error)) {
        throw InputError(std::string(destination.source) + ": only a file can be replaced");
    }
}

namespace {

/// Whether the document type of the source, if there was one, can be written as it stood.
bool hasWholeDocumentType(const LoadedDocument& loaded) {
    return !loaded.order.hasDocumentType || loaded.form.documentType.ends_with('>');
}

ExitCode writeFile(Console& console, DocumentText& text, DocumentForm form,
                   std::string_view target) {
    try {
        host::FileReplacement file{std::filesystem::path(target)};
        text.write(file.stream(), form);
        file.commit();
    } catch (const host::EStreamError& error) {
        console.complain("cannot write " + std::string(target), error.Message());
        return exitInputOutput;
    }
    return exitDone;
}

ExitCode writeStandardOutput(Console& console, DocumentText& text, DocumentForm form) {
    OutputStream stream(console.output());
    try {
        text.write(stream, form);
    } catch (const host::EWriteError&) {
        return exitDone; // the output knows whether that is a fault
    }
    if (console.output().isTerminal() && !form.endsWithLine) {
        console.output().write('\n');
    }
    return exitDone;
}

ExitCode writeWithinLimits(Console& console, const LoadedDocument& loaded, DocumentForm form,
                           const Destination& destination) {
    // 1. What will not be as it was.
    Objections objections(console, destination.source);
    if (loaded.isComplainedAbout) {
        objections.addSilently();
    }
    if (!hasWholeDocumentType(loaded)) {
        objections.add("the document type declaration is not kept");
    }
    const TargetEncoding encoding = targetEncodingOf(loaded);
    if (!encoding.lost.empty()) {
        objections.add("the encoding " + encoding.lost + " cannot be written, so it becomes UTF-8");
    }
    // 2. Where it goes.
    const bool isFile = destination.target != standardInput;
    if (isFile && objections.any() && !destination.isForced) {
        console.complain(std::string(destination.target) +
                         " stays as it is; --force writes it all the same");
        return exitFault;
    }
    DocumentText text(loaded, encoding);
    return isFile ? writeFile(console, text, form, destination.target)
                  : writeStandardOutput(console, text, form);
}

} // namespace

ExitCode writeDocument(Console& console, const LoadedDocument& loaded, DocumentForm form,
                       const Destination& destination) {
    try {
        return writeWithinLimits(console, loaded, form, destination);
    } catch (const ENuDomException& error) {
        const bool isFile = destination.target != standardInput;
        console.complain("cannot write " +
                             std::string(isFile ? destination.target : "standard output"),
                         error.Message());
        return exitInputOutput;
    }
}

bool isWrittenAlike(const LoadedDocument& loaded, DocumentForm form, host::TStream& source) {
    ComparingStream comparison(source);
    DocumentText(loaded, targetEncodingOf(loaded)).write(comparison, form);
    return comparison.isSame();
}

} // namespace tool
