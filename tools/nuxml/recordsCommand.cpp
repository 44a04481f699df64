#include "recordsCommand.h"

#include <algorithm>
#include <filesystem>

#include "arguments.h"
#include "decimal.h"
#include "host/runtime/exception.h"
#include "host/runtime/fileReplacement.h"
#include "host/runtime/memoryStream.h"
#include "input.h"
#include "pathText.h"
#include "recordForm.h"
#include "recordJobs.h"
#include "recordTasks.h"

namespace tool {

namespace {

/// The I-th of N.
struct Part {
    std::int64_t number = 1;
    std::int64_t count = 1;
};

struct Options {
    RecordForm form;
    bool hasHeader = false;
    nu::RecordOptions reading;
    std::optional<Part> part;
    std::optional<std::size_t> jobs;
    bool isOrdered = true;
    Sharing sharing = Sharing::Exact;
    std::optional<std::string_view> indexFile;
    std::u16string path;
    std::vector<Operand> inputs;
};

/// A number from 1 on.
template <class Number> std::optional<Number> countOf(std::string_view text) {
    const std::optional<Number> number = numberOf<Number>(text);
    return number > Number{0} ? number : std::nullopt;
}

Part partOf(std::string_view text) {
    const std::size_t slash = std::min(text.find('/'), text.size());
    const auto number = countOf<std::int64_t>(text.substr(0, slash));
    const auto count = countOf<std::int64_t>(text.substr(std::min(slash + 1, text.size())));
    if (!number || !count || *number > *count) {
        throw UsageError("--part is I/N, 1/4 to 4/4 for example, not " + std::string(text));
    }
    return {*number, *count};
}

/// A number of bytes, with "k", "M" or "G" behind it for multiples of 1024.
std::size_t sizeOf(std::string_view text) {
    constexpr std::string_view units = "kMG";
    const std::size_t unit = text.empty() ? units.npos : units.find(text.back());
    std::optional<std::size_t> size =
        countOf<std::size_t>(text.substr(0, text.size() - (unit == units.npos ? 0 : 1)));
    const std::size_t shift = unit == units.npos ? 0 : 10 * (unit + 1);
    if (!size || *size > std::numeric_limits<std::size_t>::max() >> shift) {
        throw UsageError("--limit is a number of bytes, 512M for example, not " +
                         std::string(text));
    }
    return *size << shift;
}

template <class Make> auto takeArgument(Make&& make) {
    try {
        return make();
    } catch (const host::Exception& error) {
        throw UsageError(error.what());
    }
}

/// Throws UsageError for what does not go together.
void checkTogether(const Options& options, bool isPromised) {
    const bool isShared = options.part || options.jobs;
    if (options.part && options.jobs) {
        throw UsageError("--part and --jobs exclude each other");
    }
    if (isPromised && options.indexFile) {
        throw UsageError("--plain and --index-file exclude each other");
    }
    if (isPromised && options.path.ends_with(u'*')) {
        throw UsageError("--plain needs the name of the records, the last one of the path");
    }
    if ((isPromised || options.indexFile) && !isShared) {
        throw UsageError("--plain and --index-file are for --part and --jobs");
    }
    if (isShared && (options.inputs.size() != 1 || options.inputs[0].text == standardInput)) {
        throw UsageError("--part and --jobs are for one file");
    }
}

Options readOptions(std::vector<Operand> operands, const Options& given) {
    Options options = given;
    if (operands.empty()) {
        throw UsageError("a path is missing");
    }
    options.path = pathFromArgument(operands.front().text);
    takeArgument([&] {
        host::TMemoryStream nothing;
        const nu::RecordReader readsPath(nothing, options.path);
        return true;
    });
    operands.erase(operands.begin());
    options.inputs = std::move(operands);
    if (options.inputs.empty()) {
        options.inputs.push_back({standardInput, false});
    }
    checkTogether(options, options.sharing == Sharing::Promised);
    return options;
}

// The index

std::int64_t modificationOf(std::string_view name) {
    std::error_code error;
    const auto time = std::filesystem::last_write_time(std::filesystem::path(name), error);
    if (error) {
        throw InputError("cannot open " + std::string(name) + ": " + error.message());
    }
    return time.time_since_epoch().count();
}

std::string indexNameOf(std::string_view file) { return std::string(file) + ".nuxidx"; }

ExitCode writeIndex(Console& console, std::string_view name,
                    std::optional<std::string_view> target) {
    const std::unique_ptr<host::TStream> file = openShared(name);
    std::optional<nu::RecordIndex> index;
    try {
        index = nu::RecordIndex::Build(*file, modificationOf(name), 0, [&](std::int64_t position) {
            showReading(console.progress(), name, position);
        });
    } catch (const host::Exception&) {
        console.progress().clear();
        return explainRecordFault(console, name);
    }
    console.progress().clear();
    const std::string place = target ? std::string(*target) : indexNameOf(name);
    try {
        host::FileReplacement replacement(place);
        index->Save(replacement.stream());
        replacement.commit();
    } catch (const host::Exception& error) {
        console.complain("cannot write " + place, error.Message());
        return exitInputOutput;
    }
    return exitDone;
}

/// The index of a file, if it has one. Throws InputError where it does not fit.
std::optional<nu::RecordIndex> loadIndex(std::string_view name,
                                         std::optional<std::string_view> indexFile) {
    const std::string place = indexFile ? std::string(*indexFile) : indexNameOf(name);
    if (!indexFile && !std::filesystem::exists(place)) {
        return std::nullopt;
    }
    const std::unique_ptr<host::TStream> stream = openShared(place);
    try {
        nu::RecordIndex index = nu::RecordIndex::Load(*stream);
        if (index.State().modified != modificationOf(name)) {
            throw InputError(std::string(name) + " was changed behind its index " + place +
                             ": make it anew by \"nuxml records --index\"");
        }
        return index;
    } catch (const host::Exception& error) {
        throw InputError(place + ": " + error.what());
    }
}

// Records

RecordOutcome showRecords(Console& console, std::string_view name, nu::RecordReader& records,
                          const RecordForm& form) {
    RecordOutcome outcome;
    std::string text;
    try {
        while (console.output().isOpen() && records.Next()) {
            text.clear();
            form.append(text, records);
            console.output().write(text);
            ++outcome.count;
            showReading(console.progress(), name, records.Position());
        }
    } catch (...) {
        console.progress().clear();
        outcome.exitCode = explainRecordFault(console, displayName(name));
    }
    console.progress().clear();
    return outcome;
}

RecordOutcome showPart(Console& console, const RecordRequest& request, const Options& options) {
    const std::unique_ptr<host::TStream> file = openShared(request.file);
    const std::int64_t number = options.part->number - 1;
    try {
        std::optional<nu::RecordReader> records;
        if (request.index != nullptr) {
            records.emplace(*file, request.path, *request.index,
                            request.index->Share(number, options.part->count), request.options);
        } else {
            records.emplace(*file, request.path,
                            nu::shareOf(file->GetSize(), number, options.part->count),
                            request.options);
        }
        return showRecords(console, request.file, *records, options.form);
    } catch (const host::Exception&) {
        return {explainRecordFault(console, request.file), 0};
    }
}

RecordOutcome showShared(Console& console, std::string_view name, const Options& options) {
    std::optional<nu::RecordIndex> index;
    if (options.sharing == Sharing::Exact) {
        index = loadIndex(name, options.indexFile);
        if (options.part && !index) {
            throw UsageError("a part needs to know where it can begin: make an index by \"nuxml "
                             "records --index " +
                             std::string(name) +
                             "\", or promise by --plain that the tag of records stands nowhere "
                             "else");
        }
    }
    const RecordRequest request{name, options.path, options.reading, options.sharing,
                                index ? &*index : nullptr};
    return options.part ? showPart(console, request, options)
                        : showRecordsByJobs(console, request, options.form,
                                            {*options.jobs, options.isOrdered});
}

RecordOutcome showInput(Console& console, std::string_view name, const Options& options) {
    try {
        if (options.part || options.jobs) {
            return showShared(console, name, options);
        }
        const Input input = openInput(name, InputReading::InPieces, console.progress());
        nu::RecordReader records(*input.stream, options.path, options.reading);
        return showRecords(console, name, records, options.form);
    } catch (const InputError& error) {
        console.complain(error.what());
    }
    return {exitInputOutput, 0};
}

ExitCode showAll(Console& console, const Options& options) {
    // 1. Of several parts the first one begins the table.
    if (options.form.columns && options.hasHeader && (!options.part || options.part->number == 1)) {
        std::string header;
        options.form.columns->AppendHeader(header, options.form.rows);
        console.output().write(header);
    }
    // 2. A bad input does not keep the others from being shown.
    ExitCode worst = exitDone;
    std::int64_t count = 0;
    for (const Operand& input : options.inputs) {
        const RecordOutcome outcome = showInput(console, input.text, options);
        worst = std::max(worst, outcome.exitCode);
        count += outcome.count;
        if (!console.output().isOpen()) {
            break;
        }
    }
    if (options.form.kind == RecordForm::Kind::Count) {
        console.output().writeNumber(count);
        console.output().write('\n');
    }
    // 3. A part without records is as good as any other.
    return count == 0 && !options.part ? std::max(worst, exitNothing) : worst;
}

/// What stands on the command line.
struct Words {
    bool isXml = false;
    bool isJson = false;
    bool isCount = false;
    bool isCsv = false;
    bool isTsv = false;
    bool isPromised = false;
    bool isUnordered = false;
    bool hasHeader = false;
    bool isIndex = false;
    std::optional<std::string_view> columns;
    std::optional<std::string_view> limit;
    std::optional<std::string_view> part;
    std::optional<std::string_view> jobs;
};

RecordForm formOf(const Words& words) {
    if (words.isXml + words.isJson + words.isCount + words.columns.has_value() > 1 ||
        words.isCsv + words.isTsv > 1) {
        throw UsageError("--xml, --json, --columns and --count exclude each other");
    }
    if ((words.isCsv || words.isTsv || words.hasHeader) && !words.columns) {
        throw UsageError("--csv, --tsv and --header are for --columns");
    }
    using Kind = RecordForm::Kind;
    RecordForm form;
    form.kind = words.isJson    ? Kind::Json
                : words.isCount ? Kind::Count
                : words.columns ? Kind::Rows
                                : Kind::Xml;
    form.rows = words.isCsv ? nu::RowForm::Csv : nu::RowForm::Tsv;
    if (words.columns) {
        form.columns =
            takeArgument([&] { return nu::RecordColumns(pathFromArgument(*words.columns)); });
    }
    return form;
}

/// What is read, and by whom.
void readSharing(const Words& words, Options& options) {
    options.reading.reading.limits = inputLimits;
    if (words.limit) {
        options.reading.sizeLimit = sizeOf(*words.limit);
    }
    if (words.part) {
        options.part = partOf(*words.part);
    }
    if (words.jobs) {
        constexpr std::size_t mostJobs = 1024;
        options.jobs = countOf<std::size_t>(*words.jobs);
        if (!options.jobs || *options.jobs > mostJobs) {
            throw UsageError("--jobs is a number from 1 to 1024, not " + std::string(*words.jobs));
        }
    }
    options.isOrdered = !words.isUnordered;
    options.sharing = words.isPromised ? Sharing::Promised : Sharing::Exact;
}

} // namespace

ExitCode runRecords(Console& console, Arguments arguments) {
    Words words;
    Options options;
    auto operands = parseArguments(arguments,
                                   {{"--xml", words.isXml},
                                    {"--json", words.isJson},
                                    {"--count", words.isCount},
                                    {"--csv", words.isCsv},
                                    {"--tsv", words.isTsv},
                                    {"--header", words.hasHeader},
                                    {"--plain", words.isPromised},
                                    {"--unordered", words.isUnordered},
                                    {"--index", words.isIndex}},
                                   {{"--columns", words.columns},
                                    {"-c", words.columns},
                                    {"--limit", words.limit},
                                    {"--part", words.part},
                                    {"--jobs", words.jobs},
                                    {"--index-file", options.indexFile}});
    // 1. An index is of a file, whatever its records are.
    if (words.isIndex) {
        if (operands.size() != 1 || arguments.size() > (options.indexFile ? 4 : 2)) {
            throw UsageError("--index takes one file, and --index-file");
        }
        return writeIndex(console, operands.front().text, options.indexFile);
    }
    // 2. Records.
    options.form = formOf(words);
    options.hasHeader = words.hasHeader;
    readSharing(words, options);
    return showAll(console, readOptions(std::move(operands), options));
}

} // namespace tool
