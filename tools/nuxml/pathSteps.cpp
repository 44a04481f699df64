#include "pathSteps.h"

#include "common/utf8.h"
#include "pathText.h"

namespace tool {

namespace {

std::string quoted(std::u16string_view text) { return '"' + NuToUtf8(text) + '"'; }

/// What a test selects, among `where` of the nodes before it.
std::string meaningOfStep(std::u16string_view test, std::size_t slashes, bool isFirst) {
    const bool isDeep = slashes == 2;
    const std::string where = isDeep    ? (isFirst ? " anywhere" : " anywhere below them")
                              : isFirst ? ""
                                        : " right below them";
    if (test.starts_with(u'@')) {
        const std::u16string_view name = test.substr(1);
        return (name == u"*"
                    ? std::string("all attributes")
                    : "attributes " + quoted(name) + " with any prefix and in any letter case") +
               (isDeep    ? " of elements" + where
                : isFirst ? " of the document"
                          : " of them");
    }
    if (test == u"*" || test.empty()) {
        return isFirst && !isDeep ? "the document element" : "all elements" + where;
    }
    if (test == u"node()") {
        return "elements, texts, comments and instructions" + where;
    }
    if (test == u"text()") {
        return "elements that hold text" + where + "; \"#text\" are the texts";
    }
    if (test == u"..") {
        return "the element that they stand in";
    }
    if (test == u".") {
        return "the same";
    }
    if (isFirst && !isDeep) {
        return "the document element, if it is " + quoted(test);
    }
    return (test.starts_with(u'#') ? "nodes " : "elements ") + quoted(test) + where;
}

std::string meaningOfFilter(std::u16string_view filter) {
    // 1. Positions.
    if (filter == u"first()" || filter == u"last()") {
        return filter == u"first()" ? "the first of them" : "the last of them";
    }
    if (!filter.empty() && filter.find_first_not_of(u"0123456789") == filter.npos) {
        return "number " + NuToUtf8(filter) + " of them; behind \"//\" of all, else of each parent";
    }
    // 2. What is compared.
    const std::size_t begin = filter.find_first_of(u"=<>");
    const std::u16string_view left = filter.substr(0, begin);
    const std::string subject = left.starts_with(u'@') ? "attribute " + quoted(left.substr(1))
                                : left == u"." || left == u"string()"
                                    ? "own text"
                                    : "element at " + quoted(left);
    if (begin == filter.npos) {
        return "those with an " + subject;
    }
    // 3. How, and with what.
    const bool hasEqual = filter.substr(begin + 1).starts_with(u'=');
    const std::u16string_view sign = filter.substr(begin, hasEqual ? 2 : 1);
    const std::u16string_view value = filter.substr(begin + sign.size());
    const bool isText = value.find_first_of(u"'\"") != value.npos;
    return "those whose " + subject + " is " +
           (sign == u"="                    ? ""
            : sign == u"<" || sign == u"<=" ? "less than "
                                            : "greater than ") +
           (hasEqual ? "or equal to " : "") + (isText ? "the text " : "the integer ") +
           NuToUtf8(value) + (isText && sign == u"=" ? ", in any letter case" : "");
}

} // namespace

std::vector<std::u16string> alternativesOf(std::u16string_view path) {
    std::vector<std::u16string> alternatives;
    for (std::size_t from = 0;;) {
        const std::size_t bar = findOutside(path.substr(from), u'|');
        if (bar == path.npos) {
            alternatives.emplace_back(path);
            return alternatives;
        }
        const std::size_t at = from + bar;
        // A bar without blanks belongs to a name.
        if (at > 0 && path[at - 1] == u' ' && path.substr(at + 1).starts_with(u' ')) {
            alternatives.emplace_back(path.substr(0, at - 1));
            path.remove_prefix(at + 2);
            from = 0;
        } else {
            from = at + 1;
        }
    }
}

std::vector<PathPart> partsOf(std::u16string_view path) {
    std::vector<PathPart> parts;
    for (std::size_t at = 0; at < path.size();) {
        // 1. The slashes in front of a step, and its test.
        const std::size_t begin = at;
        while (at < path.size() && path[at] == u'/') {
            ++at;
        }
        const std::size_t slashes = at - begin;
        const std::size_t rest = findOutside(path.substr(at), u'/');
        const std::size_t stepEnd = rest == path.npos ? path.size() : at + rest;
        const std::size_t bracket = path.substr(at, stepEnd - at).find(u'[');
        const std::size_t testEnd = bracket == path.npos ? stepEnd : at + bracket;
        const std::u16string_view test = path.substr(at, testEnd - at);
        parts.push_back({testEnd, std::u16string(path.substr(begin, testEnd - begin)),
                         path.size() == slashes && slashes == 1
                             ? "the document"
                             : meaningOfStep(test, slashes, parts.empty())});
        // 2. Its filters.
        for (at = testEnd; at < stepEnd;) {
            std::size_t depth = 0;
            std::size_t end = at;
            do {
                depth += path[end] == u'[' ? 1 : 0;
                depth -= path[end] == u']' && depth > 0 ? 1 : 0;
                ++end;
            } while (end < stepEnd && depth > 0);
            const std::u16string_view filter = path.substr(at, end - at);
            parts.push_back(
                {end, std::u16string(filter),
                 filter.size() > 2 ? meaningOfFilter(filter.substr(1, filter.size() - 2)) : ""});
            at = end;
        }
    }
    return parts;
}

} // namespace tool
