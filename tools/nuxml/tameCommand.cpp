#include "tameCommand.h"

#include <filesystem>
#include <memory>

#include "arguments.h"
#include "documentOutput.h"
#include "fault.h"
#include "host/runtime/exception.h"
#include "host/runtime/fileReplacement.h"
#include "input.h"
#include "outputStream.h"
#include "readingOptions.h"

namespace tool {

namespace {

/// Everything from one stream to another, without a byte-order mark in front.
void copy(host::TStream& from, host::TStream& to) {
    constexpr std::size_t blockSize = std::size_t{64} * 1024;
    constexpr std::string_view mark = "\xEF\xBB\xBF";
    const auto block = std::make_unique<char[]>(blockSize);
    bool isStart = true;
    for (;;) {
        // The mark comes whole, as the beginning of whatever comes first.
        const std::size_t count = from.Read(block.get(), blockSize);
        if (count == 0) {
            return;
        }
        std::string_view bytes(block.get(), count);
        if (isStart && bytes.starts_with(mark)) {
            bytes.remove_prefix(mark.size());
        }
        isStart = false;
        to.WriteBuffer(bytes.data(), bytes.size());
    }
}

ExitCode tame(Console& console, host::TStream& source, const TNuConformingOptions& options,
              std::string_view target) {
    TNuConformingStream stage(source, options);
    if (target == standardInput) {
        OutputStream stream(console.output());
        copy(stage, stream);
        return exitDone;
    }
    host::FileReplacement file{std::filesystem::path(target)};
    copy(stage, file.stream());
    file.commit();
    return exitDone;
}

} // namespace

ExitCode runTame(Console& console, Arguments arguments) {
    ReadingOptions reading;
    bool isInPlace = false;
    std::optional<std::string_view> given;
    const auto operands = parseArguments(arguments, {{"-i", isInPlace}},
                                         {{"-o", given}, {whiteOption, reading.white}});
    if (operands.size() > 1) {
        throw UsageError("more than one file");
    }
    const std::string_view source = operands.empty() ? standardInput : operands[0].text;
    const std::string_view target = targetOf(source, isInPlace, given);
    checkReplaced({source, target});
    TNuConformingOptions options = *reading.conforming();
    options.keepLines = false;
    options.keepEncodingName = false;
    options.limits = inputLimits;

    const std::string_view shown = displayName(source);
    const Input input = openInput(source, InputReading::BySize, console.progress());
    try {
        return tame(console, *input.stream, options, target);
    } catch (const ENuXmlFault& fault) {
        complainAt(console, shown, {fault.Line(), fault.Column()}, Severity::Error,
                   fault.Message());
        return exitFault;
    } catch (const host::EWriteError& error) {
        if (target == standardInput) {
            return exitDone; // the output knows whether that is a fault
        }
        console.complain("cannot write " + std::string(target), error.Message());
    } catch (const host::EFileOpenError& error) { // the input is open already
        console.complain("cannot write " + std::string(target), error.Message());
    } catch (const host::EStreamError& error) {
        console.complain("cannot read " + std::string(shown), error.Message());
    }
    return exitInputOutput;
}

} // namespace tool
