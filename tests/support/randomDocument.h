#pragma once

#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "support/randomText.h"

namespace support {

/// Markup that is plain for long stretches, with everything in between that is not.
inline std::string randomDocument(Random& random) {
    static constexpr std::string_view names[] = {
        "a",
        "b",
        "item",
        "p:a",
        "P:b",
        "q:r:s",
        "x",
        "xml:x",
        "Größe",
        "名前",
        "a=b",
        "p:",
        "a.very-long-name-of-an-element",
        "as-long-as-names-can-be-when-they-are-guessed-48",
        "xmlns",
        "xmlnsfoo",
        "a_name_that_is_longer_than_what_is_guessed_at_all_by_anybody"};
    static constexpr std::string_view attributes[] = {
        "a=\"1\"",
        "b=\"two words\"",
        "a=\"again\"",
        "p:a=\"\"",
        "xmlns=\"u\"",
        "xmlns:p=\"v\"",
        "XMLNS:P=\"w&amp;\"",
        "xmlns:q:r=\"u\"",
        "c=\"&lt;1&gt;\"",
        "c=\"&amp;lt;&quot;&apos;\"",
        "c=\"&amp;&#65;\"",
        "c='1'",
        "d=\"&#x;\"",
        "e=\"&unknown;\"",
        "f=\"Grüße\"",
        "g=\"漢字\"",
        "h=\"a\nb\"",
        "i=\"\n\"",
        "k =\"1\"",
        "l= \"1\"",
        "m",
        "n=\"<>'\"",
        "o=\"0123456\"",
        "o=\"01234567\"",
        "xml:space=\"preserve\"",
        "xml:space=\"default\"",
        "xml:space=\"odd\"",
        ":s=\"1\"",
        "t:=\"1\"",
        "u\tv=\"1\"",
        "w=\"0123456789012345678901234567890123456789\""};
    static constexpr std::string_view texts[] = {
        "text",
        " ",
        "\n",
        "\r\n",
        "\t",
        "\n  ",
        "a &amp; b",
        "Grüße",
        "漢",
        "漢字漢字",
        "😀",
        ">",
        "x>y",
        "\n>",
        "  text with white space  ",
        "<!-- c -->",
        "<![CDATA[ d ]]>",
        "<?pi data?>",
        "<!--漢-->",
        "<!---->",
        "<!--->-->",
        "<!-- a-b --- c -->",
        "<!--\n-->",
        "<!--é-é-->",
        "\x01",
        "]]>",
        "an ASCII text that is longer than what stands in a node"};
    const auto pick = [&random](const auto& list) { return list[random(std::size(list))]; };
    const std::size_t oddness = random(4) == 0 ? 4 : 40;
    std::string text =
        random(3) == 0 ? "\xEF\xBB\xBF" : "<?xml version=\"1.0\" encoding=\"utf-8\"?>";
    text += "<root>";
    for (std::size_t left = 1 + random(80); left > 0; --left) {
        switch (random(4)) {
        case 0:
            text += "</";
            text += random(2) == 0 ? pick(names) : "a";
            text += ">";
            break;
        case 1:
            text += pick(texts);
            break;
        default:
            text += "<";
            text += random(3) == 0 ? pick(names) : names[random(3)];
            for (std::size_t count = random(4); count > 0; --count) {
                text += random(oddness) == 0 ? "  " : " ";
                text += attributes[random(random(oddness) == 0 ? std::size(attributes) : 9)];
            }
            text += random(oddness) == 0 ? " >" : random(3) == 0 ? "/>" : ">";
        }
    }
    if (random(oddness) == 0) {
        static constexpr std::string_view oddities[] = {{"\0", 1}, "<", ">", "\"", "/", "<!x>"};
        text.insert(random(text.size()), pick(oddities));
    }
    // Often long enough for most of it to be beyond what is left to the end.
    return text + (random(2) == 0 ? std::string(70, ' ') : "");
}

/// The same kinds of content in elements that are closed, as the conforming stage wants it; some
/// documents declare attributes.
inline std::string randomWellFormed(Random& random) {
    static constexpr std::string_view names[] = {"a", "b", "item", "p:a", "P:b", "Größe", "名前"};
    static constexpr std::string_view attributes[] = {
        " a=\"1\"",       " b='2'",         " p:c=\"two words\"",     " xmlns=\"u\"",
        " xmlns:p=\"v\"", " xmlns:P=\"w\"", " c=\"&lt;1>'\"",         " d=\"漢字 &#65;\"",
        "\n e=\"a\nb\"",  " XMLNS:x=\"u\"", " xml:space=\"preserve\""};
    static constexpr std::string_view texts[] = {
        "text", " ", "\n",  "\r\n",         "\n  ",      "a &amp; b",     "Grüße",
        "漢字", ">", "x>y", "<!-- c\n -->", "<!--漢-->", "<![CDATA[d]]>", "<?pi data?>"};
    std::string text =
        random(2) == 0 ? "<?xml version=\"1.0\" encoding=\"utf-8\"?>" : "\xEF\xBB\xBF";
    static constexpr std::string_view declarations[] = {
        " a CDATA 'x'",         " b NMTOKENS ' 1 2 '",
        " c NMTOKENS #IMPLIED", " d CDATA '&lt;漢&#10;'",
        " p:c CDATA 'p'",       " P:c ID 'P'",
        " xmlns CDATA 'v'",     " xmlns:p CDATA 'p'",
        " xmlnsfoo CDATA ''",   " xml:space (preserve|default) 'preserve'"};
    if (random(4) == 0) {
        text += "<!DOCTYPE root [";
        for (std::size_t left = random(3); left > 0; --left) {
            text.append("<!ATTLIST ").append(names[random(4)]);
            for (std::size_t index = random(10); index < std::size(declarations);
                 index += 1 + random(5)) {
                text += declarations[index];
            }
            text += ">";
        }
        text += "]>";
    }
    text += "<root xmlns:p=\"p\" xmlns:P=\"q\">";
    std::vector<std::string_view> open{"root"};
    for (std::size_t left = random(80); left > 0; --left) {
        const std::size_t kind = random(5);
        if (kind == 0 && open.size() > 1) {
            text.append("</").append(open.back()).append(random(9) == 0 ? " >" : ">");
            open.pop_back();
        } else if (kind == 1) {
            text += texts[random(std::size(texts))];
        } else {
            const std::string_view name = names[random(2) == 0 ? 0 : random(std::size(names))];
            text.append("<").append(name);
            for (std::size_t index = random(30); index < std::size(attributes);
                 index += 1 + random(6)) {
                text += attributes[index];
            }
            const bool isEmpty = random(3) == 0;
            text += isEmpty ? random(2) == 0 ? " />" : "/>" : ">";
            if (!isEmpty) {
                open.push_back(name);
            }
        }
    }
    for (; !open.empty(); open.pop_back()) {
        text.append("</").append(open.back()).append(">");
    }
    return text + (random(2) == 0 ? std::string(70, ' ') : "");
}

} // namespace support
