// Twice the document must cost twice the time: selects in n and 2n elements with every kind of step
// and filter, creates, sorts, edits beside a list, adopts, and prints the ratio of the times. Long
// paths count as well.

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <limits>
#include <string>
#include <string_view>

#include "nuXmlDOM.h"

namespace {

std::u16string repeated(std::u16string_view piece, std::size_t count) {
    std::u16string text;
    text.reserve(piece.size() * count);
    for (std::size_t index = 0; index < count; ++index) {
        text += piece;
    }
    return text;
}

std::u16string digits(std::size_t number) {
    const std::string text = std::to_string(number);
    return {text.begin(), text.end()};
}

/// Side by side, with numbers that jump about.
std::u16string rows(std::size_t count) {
    std::u16string text = u"<r>";
    for (std::size_t index = 0; index < count; ++index) {
        text += u"<x id=\"" + digits(index * 7919 % count) + u"\"><y>" +
                digits(index * 104729 % count) + u"</y></x>";
    }
    return text + u"</r>";
}

std::u16string nested(std::size_t count) {
    return u"<r>" + repeated(u"<x>", count) + u"t" + repeated(u"</x>", count) + u"</r>";
}

/// Matches behind deeper ones: the order of the result is not that of the document.
std::u16string mixed(std::size_t count) {
    return u"<r>" + repeated(u"<g><x/></g><x/>", count / 3) + u"</r>";
}

struct Shape {
    std::u16string (*document)(std::size_t count);
    const char* path;
    TNuDOMSelectOptions options = {};
};

constexpr Shape shapes[] = {
    {rows, "x"},
    {rows, "x/y"},
    {rows, "*"},
    {rows, "node()"},
    {rows, "text()"},
    {rows, "x/@id"},
    {rows, "x/@*"},
    {rows, "x/.."},
    {rows, "x/."},
    {rows, "X/Y", soCaseInsensitive},
    {rows, "p:x/p:y", soIgnoreNamespace},
    {rows, "//x"},
    {rows, "//*"},
    {rows, "//@id"},
    {rows, "//.."},
    {rows, "//..[2]"},
    {rows, "x[@id]"},
    {rows, "x[@id='17']"},
    {rows, "x[@id>17]"},
    {rows, "x[y]"},
    {rows, "x[y='17']"},
    {rows, "x[y<17]"},
    {rows, "x[text()]"},
    {rows, "x[*]"},
    {rows, "x[.]"},
    {rows, "x/y[.=17]"},
    {rows, "x[17]"},
    {rows, "x[first()]"},
    {rows, "x[last()]"},
    {rows, "x | //y"},
    {rows, "x/new", soCreate},
    {rows, "x[@new]", soCreate},
    {nested, "//x"},
    {nested, "//*"},
    {nested, "//text()"},
    {mixed, "//x"},
};

/// Processor time, which other programs disturb less than the clock on the wall.
template <class Work> double seconds(Work&& work) {
    const std::clock_t start = std::clock();
    work();
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

/// What the names of the rows that are wanted hold.
std::string_view wanted;

/// `timeOf` gives the time of one run for a size.
template <class Time> void compare(std::string_view name, std::size_t count, Time&& timeOf) {
    if (name.find(wanted) == std::string_view::npos) {
        return;
    }
    // Disturbances only ever add time, so the fastest of several runs tells the most.
    double once = std::numeric_limits<double>::max();
    double twice = once;
    for (int repetition = 0; repetition < 5; ++repetition) {
        once = std::min(once, timeOf(count));
        twice = std::min(twice, timeOf(2 * count));
    }
    const double ratio = twice / once;
    std::printf("%-28s %11zu %9.1f %9.1f %7.2f%s\n", std::string(name).c_str(), count, once * 1000,
                twice * 1000, ratio, ratio > 2.6 ? "  more than linear" : "");
    std::fflush(stdout);
}

double timeOfShape(const Shape& shape, std::size_t count) {
    const std::string_view path = shape.path;
    const NuRef<TNuDOMDocument> document = NuCreateDOMDocument(shape.document(count));
    const TNuDOMPath read(std::u16string(path.begin(), path.end()), shape.options);
    return seconds([&] { static_cast<void>(read.CreateNodeList(*document->GetRootNode())); });
}

double timeOfSort(std::u16string_view path, std::size_t count) {
    const NuRef<TNuDOMDocument> document = NuCreateDOMDocument(rows(count));
    const auto list = document->CreateElementList(u"r/x");
    return seconds([&] { list->Sort(path); });
}

double timeOfPath(std::u16string_view head, std::u16string_view piece, std::u16string_view tail,
                  std::size_t count) {
    const NuRef<TNuDOMDocument> document = NuCreateDOMDocument(u"<r><x/></r>");
    const std::u16string path =
        std::u16string(head) + repeated(piece, count) + std::u16string(tail);
    return seconds([&] { static_cast<void>(document->CreateNodeList(path)); });
}

/// What a loop does that edits the children of `root` by their list.
using Edit = void (*)(TNuDOMElement& root, TNuDOMNodeList& list);

double timeOfEdit(Edit edit, std::size_t count) {
    const NuRef<TNuDOMDocument> document =
        NuCreateDOMDocument(u"<r>" + repeated(u"<x/>", count) + u"</r>");
    TNuDOMElement& root = *document->GetRootNode();
    return seconds([&] { edit(root, root.get_childNodes()); });
}

void emptyFromTheFront(TNuDOMElement& root, TNuDOMNodeList& list) {
    while (list.Count() != 0) {
        root.removeChild(*list.GetItem(0));
    }
}

void insertWhileWalking(TNuDOMElement& root, TNuDOMNodeList& list) {
    for (std::ptrdiff_t place = 0; place < static_cast<std::ptrdiff_t>(list.Count()); place += 2) {
        root.InsertComment(u"", rdpBefore, list.GetItem(place));
    }
}

void turnRound(TNuDOMElement& root, TNuDOMNodeList& list) {
    for (std::size_t count = list.Count(); count != 0; --count) {
        root.appendChild(*list.GetItem(0));
    }
}

/// One element out of each of many documents.
double timeOfAdoption(std::size_t count) {
    const NuRef<TNuDOMDocument> target = NuCreateDOMDocument(u"<r/>");
    return seconds([&] {
        for (std::size_t index = 0; index < count; ++index) {
            const NuRef<TNuDOMDocument> source = NuCreateDOMDocument(u"<x/>");
            target->GetRootNode()->appendChild(*source->GetRootNode());
        }
    });
}

} // namespace

/// Argument: a part of the names of the rows that are wanted; else all.
int main(int argumentCount, char** arguments) {
    wanted = argumentCount > 1 ? arguments[1] : "";
    std::printf("%-28s %11s %9s %9s %7s\n", "path", "n", "n, ms", "2n, ms", "2n / n");
    constexpr std::size_t elements = 200'000;
    for (const Shape& shape : shapes) {
        const std::string name = std::string(shape.path) + (shape.document == nested  ? ", nested"
                                                            : shape.document == mixed ? ", mixed"
                                                                                      : "");
        compare(name, elements, [&](std::size_t count) { return timeOfShape(shape, count); });
    }
    // Sorting compares, so it takes a little more than twice the time.
    for (const std::u16string_view path : {u"@id", u"y"}) {
        const std::string name = std::string("Sort by ") + (path == u"y" ? "y" : "@id");
        compare(name, elements, [&](std::size_t count) { return timeOfSort(path, count); });
    }
    compare("alternatives", elements / 2,
            [](std::size_t count) { return timeOfPath(u"r", u" | x", u"", count); });
    compare("steps", elements / 2,
            [](std::size_t count) { return timeOfPath(u"r", u"/.", u"", count); });
    compare("filters", elements / 2,
            [](std::size_t count) { return timeOfPath(u"r", u"[1]", u"", count); });
    compare("slashes in quotation marks", elements / 2,
            [](std::size_t count) { return timeOfPath(u"r[@x=\"", u"&slash;", u"\"]", count); });
    compare("empty from the front", elements,
            [](std::size_t count) { return timeOfEdit(emptyFromTheFront, count); });
    compare("insert while walking", elements,
            [](std::size_t count) { return timeOfEdit(insertWhileWalking, count); });
    compare("first to last", elements,
            [](std::size_t count) { return timeOfEdit(turnRound, count); });
    compare("adopt from many documents", elements / 10, timeOfAdoption);
}
