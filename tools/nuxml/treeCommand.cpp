#include "treeCommand.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <iterator>
#include <optional>
#include <queue>
#include <tuple>

#include "arguments.h"
#include "decimal.h"
#include "fault.h"
#include "host/runtime/exception.h"
#include "input.h"
#include "outline.h"
#include "readingOptions.h"

namespace tool {

namespace {

constexpr std::string_view usual = "\x1B[0m";
constexpr std::string_view faint = "\x1B[2m";
constexpr std::string_view blue = "\x1B[1;34m";
constexpr std::string_view cyan = "\x1B[36m";

/// What there is room for.
struct Screen {
    std::size_t lines = 24;
    std::size_t width = 100;
};

Screen screenOf(const Output& output) {
    Screen screen;
    winsize size = {};
    if (output.isTerminal() && ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_row > 4 &&
        size.ws_col > 20) {
        screen = {size.ws_row - 1U, size.ws_col};
    }
    return screen;
}

/// Writes an outline, a line for each node that there is room for.
class OutlineWriter {
public:
    OutlineWriter(Console& console, const Outline& outline, Screen screen)
        : output_(console.output()), nodes_(outline.nodes()), outline_(outline), screen_(screen),
          isColoured_(console.isColoured()), isShown_(nodes_.size(), false) {}

    void write(std::string_view name) {
        writeTitle(name);
        choose();
        // A document may be deeper than a stack.
        std::vector<std::size_t> waiting{0};
        while (!waiting.empty()) {
            const OutlineNode& node = nodes_[waiting.back()];
            waiting.pop_back();
            writeNode(node);
            std::copy_if(node.children.rbegin(), node.children.rend(), std::back_inserter(waiting),
                         [this](std::size_t child) { return isShown_[child]; });
        }
    }

private:
    /// Chooses what is shown: from the top down, of one depth what there is most of.
    void choose() {
        using Candidate = std::tuple<std::size_t, std::uint64_t, std::size_t>;
        std::priority_queue<Candidate, std::vector<Candidate>, std::greater<>> candidates;
        const auto add = [&](std::size_t index) {
            candidates.emplace(nodes_[index].depth, ~nodes_[index].count, index);
        };
        add(0);
        for (std::size_t left = screen_.lines - 2; left > 0 && !candidates.empty(); --left) {
            const std::size_t index = std::get<2>(candidates.top());
            candidates.pop();
            isShown_[index] = true;
            const OutlineNode& node = nodes_[index];
            nameWidth_ = std::max(
                nameWidth_, std::min<std::size_t>(2 * node.depth + node.name.size(), widestName));
            countWidth_ =
                std::max(countWidth_, Decimal(static_cast<std::int64_t>(node.count)).view().size());
            std::ranges::for_each(node.children, add);
        }
    }

    void writeTitle(std::string_view name) {
        output_.write(name);
        output_.write(": ");
        writeCount(outline_.elementCount(), " element");
        output_.write(", ");
        writeCount(outline_.attributeCount(), " attribute");
        output_.write(", ");
        writeCount(outline_.depth(), " level");
        output_.write('\n');
    }

    void writeCount(std::uint64_t count, std::string_view noun) {
        output_.writeNumber(static_cast<std::int64_t>(count));
        output_.write(noun);
        output_.write(count == 1 ? "" : "s");
    }

    void writeNode(const OutlineNode& node) {
        // 1. The name and how many there are.
        const Decimal count(static_cast<std::int64_t>(node.count));
        const std::size_t width = 2 * node.depth + node.name.size();
        output_.writeSpaces(std::min(2 * node.depth, screen_.width / 2));
        colour(blue);
        output_.writeText(node.name, Escapes::Visible);
        colour(usual);
        output_.writeSpaces((width < nameWidth_ ? nameWidth_ - width : 0) + 2 + countWidth_ -
                            std::min(count.view().size(), countWidth_));
        output_.write(count.view());
        // 2. What is in them, as far as the line goes.
        left_ =
            screen_.width - std::min(screen_.width, std::max(nameWidth_, width) + countWidth_ + 4);
        for (const OutlineNode::Attribute& attribute : node.attributes) {
            writeExamples(u'@' + attribute.name, attribute.values);
        }
        writeExamples({}, node.texts);
        writeHidden(node);
        output_.write('\n');
    }

    void writeExamples(const std::u16string& name, const Examples& examples) {
        if (name.empty() && examples.texts().empty()) {
            return;
        }
        std::size_t needed = name.size() + 2;
        if (needed > left_) {
            left_ = 0;
            return;
        }
        left_ -= needed;
        output_.write("  ");
        colour(cyan);
        output_.writeText(name, Escapes::Visible);
        colour(usual);
        std::string_view gap = name.empty() ? "" : "=";
        for (const std::u16string& text : examples.texts()) {
            if ((needed = text.size() + 3) > left_) {
                break;
            }
            left_ -= needed;
            output_.write(gap);
            output_.write('"');
            output_.writeText(text, Escapes::Visible);
            output_.write('"');
            gap = " ";
        }
    }

    /// What stands below and found no room.
    void writeHidden(const OutlineNode& node) {
        const auto hidden = static_cast<std::size_t>(std::ranges::count_if(
            node.children, [&](std::size_t child) { return !isShown_[child]; }));
        if (hidden + node.hiddenChildren > 0) {
            colour(faint);
            output_.write("  + ");
            writeCount(hidden + node.hiddenChildren, " more name");
            output_.write(" below");
            colour(usual);
        }
    }

    void colour(std::string_view code) {
        if (isColoured_) {
            output_.write(code);
        }
    }

    static constexpr std::size_t widestName = 40;

    Output& output_;
    const std::vector<OutlineNode>& nodes_;
    const Outline& outline_;
    Screen screen_;
    bool isColoured_;
    std::vector<bool> isShown_;
    std::size_t nameWidth_ = 0;
    std::size_t countWidth_ = 0;
    std::size_t left_ = 0; ///< of the line
};

std::size_t lineCountOf(std::string_view text) {
    const auto lines = numberOf<std::size_t>(text);
    if (!lines || *lines < 3) {
        throw UsageError("--lines is a number from 3 on, not " + std::string(text));
    }
    return *lines;
}

ExitCode showTree(Console& console, std::string_view name, const ReadingOptions& reading,
                  Screen screen) {
    const std::string_view shown = displayName(name);
    const Input input = openInput(
        name, reading.isLarge ? InputReading::InPieces : InputReading::BySize, console.progress());
    const auto outline = host::makeRef<Outline>(shown, console.progress());
    TNuSAXXMLReader reader;
    reader.SetLimits(inputLimits);
    reader.setContentHandler(outline);
    reader.SetParserChoice(input.parserChoice);
    if (const auto conforming = reading.conforming()) {
        reader.SetConforming(*conforming);
    }
    std::optional<Fatality> fatality;
    reader.OnFatalError = [&](host::ISAXParseError& error) { fatality = fatalityOf(error); };
    std::optional<std::u16string> message;
    try {
        reader.Parse(*input.stream);
    } catch (const std::exception&) {
        message = host::currentExceptionMessage();
    }
    console.progress().clear();
    // What was seen of a faulty document helps to know it.
    if (!outline->nodes().empty()) {
        OutlineWriter(console, *outline, screen).write(shown);
    }
    if (fatality) {
        return explain(console, shown, *fatality);
    }
    if (message) {
        complainAt(console, shown, {}, Severity::Error, *message);
        return exitFault;
    }
    return exitDone;
}

} // namespace

ExitCode runTree(Console& console, Arguments arguments) {
    ReadingOptions reading;
    std::optional<std::string_view> lines;
    auto inputs =
        parseArguments(arguments, {{largeOption, reading.isLarge}, {rawOption, reading.isRaw}},
                       {{"--lines", lines}});
    Screen screen = screenOf(console.output());
    if (lines) {
        screen.lines = lineCountOf(*lines);
    }
    if (inputs.empty()) {
        inputs.push_back({standardInput, false});
    }
    ExitCode worst = exitDone;
    for (const Operand& input : inputs) {
        try {
            worst = std::max(worst, showTree(console, input.text, reading, screen));
        } catch (const InputError& error) {
            console.complain(error.what());
            worst = exitInputOutput;
        }
    }
    return worst;
}

} // namespace tool
