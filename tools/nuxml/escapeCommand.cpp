#include "escapeCommand.h"

#include <optional>
#include <string>

#include "arguments.h"
#include "common/stringStream.h"
#include "common/utf8.h"
#include "host/runtime/exception.h"
#include "input.h"
#include "nuXmlParser.h"

namespace tool {

namespace {

/// The text that a command works on, and how its result is written.
struct Subject {
    std::u16string text;
    bool endsWithLineFeed; ///< text of the command line gets one, standard input is left as it is
};

Subject readSubject(Console& console, Arguments arguments) {
    const auto operands = parseArguments(arguments, {});
    if (operands.size() > 1) {
        throw UsageError("more than one text; put it into quotes");
    }
    const bool isArgument =
        !operands.empty() && (operands[0].isLiteral || operands[0].text != standardInput);
    std::optional<std::u16string> text;
    if (isArgument) {
        text = NuUtf8ToWideString(operands[0].text);
    } else {
        const auto stream = readStandardInput(console.progress());
        text = NuUtf8ToWideString({reinterpret_cast<const char*>(stream->Memory()),
                                   static_cast<std::size_t>(stream->GetSize())});
    }
    if (!text) {
        throw InputError(isArgument ? "the text is not UTF-8" : "standard input is not UTF-8");
    }
    return {std::move(*text), isArgument};
}

void writeResult(Console& console, std::u16string_view result, const Subject& subject) {
    console.output().writeText(result, Escapes::None);
    if (subject.endsWithLineFeed) {
        console.output().write('\n');
    }
}

} // namespace

ExitCode runEscape(Console& console, Arguments arguments) {
    const Subject subject = readSubject(console, arguments);
    // Into a stream, because that form keeps NUL characters: unescaping gives the input back.
    TNuStringStream result(2, subject.text.size());
    NuStrToXML(subject.text.data(), subject.text.size(), result);
    writeResult(console, result.WideView(), subject);
    return exitDone;
}

ExitCode runUnescape(Console& console, Arguments arguments) {
    const Subject subject = readSubject(console, arguments);
    try {
        writeResult(console, NuXMLToStr(subject.text), subject);
    } catch (const host::EConvertError& error) {
        console.complain("cannot unescape", error.Message());
        return exitFault;
    }
    return exitDone;
}

} // namespace tool
