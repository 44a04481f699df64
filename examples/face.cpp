// What the tree offers to C++: text, values, ranges, constness, handles, copies.

#include <algorithm>
#include <iostream>
#include <vector>

#include "nuXmlDOM.h"

namespace {

// Who only reads takes a constant element: everything that comes out of it is constant, too.
double total(const TNuDOMElement& order) {
    double sum = 0;
    for (const TNuDOMElement& item : order.ChildElements("item")) {
        sum += item.Get("@count", 1) * item.Get("@price", 0.0);
    }
    return sum;
}

void showText() {
    const auto document = NuParseDocument("<tree name='Ahorn'/>");
    TNuDOMElement& tree = *document->get_documentElement();
    tree.setAttribute("name", "楓");                     // UTF-8 as std::string has it,
    tree.setAttribute(u8"kind", u8"🍁");                  // as char8_t,
    tree.setAttribute(u"height", u"12 m");               // and UTF-16
    const std::string name = tree.getAttribute("name");  // asked in UTF-8: std::string
    const NuXmlString wide = tree.getAttribute(u"name"); // asked in UTF-16: NuXmlString
    std::cout << name << ' ' << wide.size() << ' ' << tree << '\n';
    try {
        tree.set_text("caf\xE9"); // Latin-1, which is not UTF-8
    } catch (const host::EConvertError& error) {
        std::cout << error.what() << '\n';
    }
}

void showValues(TNuDOMElement& order) {
    const int count = order.Get("item/@count", 1);          // 1 where there is none
    const auto price = order.Get<double>("item[2]/@price"); // std::optional<double>
    const auto note = order.Get<std::string>("note");       // std::optional<std::string>
    const bool paid = order.At("paid").Get<bool>();         // throws where there is no <paid>
    std::cout << count << ' ' << price.value_or(0) << ' ' << note.has_value() << ' ' << paid
              << '\n';
    order.Set("paid", true);
    order.Set("address/@city", "Zürich"); // <address> is made for it
    try {
        static_cast<void>(order.Get("item/@price", 0)); // no integer
    } catch (const host::EConvertError& error) {
        std::cout << error.what() << '\n';
    }
}

void showRanges(TNuDOMElement& order) {
    const auto isDear = [](const TNuDOMElement& item) { return item.Get("@price", 0.0) > 5; };
    const auto items = order.ChildElements("item");
    std::cout << std::ranges::count_if(items, isDear) << " dear, the first is "
              << std::ranges::find_if(items, isDear)->Text() << '\n';

    // Sorted by price: appending a node that is there moves it.
    auto sorted = order.Select("item");
    sorted.Sort("@price");
    for (TNuDOMElement& item : sorted) {
        order.appendChild(item);
    }
    // A selection is a snapshot, so that a loop over it may take nodes out of the tree.
    for (TNuDOMElement& item : order.Select("item[@count=0]")) {
        order.RemoveElement(item);
    }
    std::cout << order << '\n';
}

void showCopies(const TNuDOMElement& order) {
    const auto archive = NuParseDocument("<archive/>");
    TNuDOMElement& root = *archive->get_documentElement();
    root.AddCopy(order).Rename("entry");
    root.InsertCopy(order.At("item"), rdpFirst, nullptr);
    const NuRef<TNuDOMDocument> backup = archive->CreateCopy();
    std::cout << *backup << '\n';
}

} // namespace

int main() {
    showText();
    const auto document =
        NuParseDocument("<order><item count='2' price='7.5'>saw</item>"
                        "<item price='0.5'>nail</item>"
                        "<item count='0' price='3'>tape</item><paid>0</paid></order>");
    TNuDOMElement& order = document->At("order");
    std::cout << total(order) << '\n';
    showValues(order);
    showRanges(order);
    showCopies(order);
}
