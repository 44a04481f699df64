#pragma once

#include <algorithm>
#include <cstddef>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "common/caseFolding.h"
#include "host/runtime/exception.h"
#include "host/runtime/format.h"
#include "nuXmlDOM.h"

/// Path selection as its rules are told: step by step, on texts that are cut and copied, with a
/// call in a call for every level. What the library does in fewer steps has to come to the same.
///
/// The document stands for the element that holds the document element.
class SlowPaths {
public:
    using Text = std::u16string;
    using Nodes = std::vector<TNuDOMNode*>;

    /// A selection that would take too long to be worth a comparison.
    struct TooMuch {};

    explicit SlowPaths(TNuDOMSelectOptions options) : options_(options) {}

    Nodes select(TNuDOMNode& context, Text path, bool elementsOnly) {
        // 1. Slashes in double quotes, as far as the path reached at first.
        const std::size_t length = path.size();
        bool isQuoted = false;
        for (std::size_t index = 0; index < length; ++index) {
            if (path[index] == u'"') {
                isQuoted = !isQuoted;
            } else if (path[index] == u'/' && isQuoted) {
                path.replace(index, 1, u"&slash;");
            }
        }
        // 2. One alternative after the other.
        Nodes result;
        for (const Text& alternative : split(path, u" | ")) {
            selectAlternative(context, alternative, result);
        }
        if (elementsOnly) {
            Nodes elements;
            for (TNuDOMNode* node : result) {
                if (node->get_nodeType() == host::ELEMENT_NODE) {
                    elements.push_back(node);
                }
            }
            return elements;
        }
        return result;
    }

    TNuDOMNode* single(TNuDOMNode& context, const Text& path, bool elementsOnly) {
        const Nodes found = select(context, path, elementsOnly);
        if (elementsOnly && found.size() > 1) {
            throw ENuDomException(
                host::formatMessage(u"More than one instance of \"%s\" was found.", {path}));
        }
        if (found.size() == 1) {
            return found.front();
        }
        if (options_.has(soRaise)) {
            throw ENuDomException(
                host::formatMessage(u"There is no node for the given path \"%s\".", {path}));
        }
        return nullptr;
    }

private:
    static bool holds(const Text& text, std::u16string_view part) {
        return text.find(part) != Text::npos;
    }

    static bool starts(const Text& text, std::u16string_view part) {
        return text.rfind(part, 0) == 0;
    }

    static std::vector<Text> split(Text text, std::u16string_view separator) {
        std::vector<Text> parts;
        for (std::size_t at = text.find(separator); at != Text::npos; at = text.find(separator)) {
            parts.push_back(text.substr(0, at));
            text.erase(0, at + separator.size());
        }
        parts.push_back(text);
        return parts;
    }

    static Text trim(Text text) {
        const auto isBlank = [](char16_t unit) {
            return unit == u' ' || unit == u'\t' || unit == u'\r' || unit == u'\n';
        };
        while (!text.empty() && isBlank(text.back())) {
            text.pop_back();
        }
        while (!text.empty() && isBlank(text.front())) {
            text.erase(0, 1);
        }
        return text;
    }

    static bool isElement(const TNuDOMNode& node) {
        return node.get_nodeType() == host::ELEMENT_NODE ||
               node.get_nodeType() == host::DOCUMENT_NODE;
    }

    static Nodes childrenOf(TNuDOMNode& node) {
        Nodes children;
        if (node.get_nodeType() == host::DOCUMENT_NODE) {
            if (TNuDOMElement* root = static_cast<TNuDOMDocument&>(node).GetRootNode()) {
                children.push_back(root);
            }
        } else if (node.get_nodeType() == host::ELEMENT_NODE) {
            for (TNuDOMNode& child : static_cast<TNuDOMElement&>(node).ChildNodes()) {
                children.push_back(&child);
            }
        }
        return children;
    }

    static TNuDOMNode& parentOrFail(TNuDOMNode& node) {
        if (node.get_parentNode() == nullptr) {
            throw host::Exception(u"Invalid Path; There is no parentnode!");
        }
        return *node.get_parentNode();
    }

    void selectAlternative(TNuDOMNode& context, const Text& path, Nodes& result) {
        TNuDOMNode* start = &context;
        if (starts(path, u"//")) {
            start = &context;
        } else if (starts(path, u"..")) {
            start = &parentOrFail(parentOrFail(context));
        } else if (starts(path, u"/")) {
            start = context.OwnerDocument();
        } else if (starts(path, u".")) {
            start = &parentOrFail(context);
        }
        Nodes found;
        selectSteps(*start, starts(path, u"/") ? path : u"/" + path, found);
        result.insert(result.end(), found.begin(), found.end());
    }

    void selectSteps(TNuDOMNode& context, Text path, Nodes& result) {
        if (options_.has(soCreate) && options_.has(soRaise)) {
            throw host::EAssertionFailed(u"Invalid combination of options");
        }
        if (options_.has(soCaseInsensitive)) {
            path = NuFolded(path);
        }
        const bool isDeep = starts(path, u"//");
        path.erase(0, isDeep ? 2 : 1);
        const std::size_t slash = path.find(u'/');
        Text step = path.substr(0, slash);
        for (std::size_t at = step.find(u"&slash;"); at != Text::npos;
             at = step.find(u"&slash;", at + 1)) {
            step.replace(at, 7, u"/");
        }
        Nodes candidates;
        addMatching(step, context, candidates, isDeep);
        if (candidates.empty() && options_.has(soCreate)) {
            candidates.push_back(&create(step, context, isDeep));
        }
        for (TNuDOMNode* candidate : candidates) {
            count();
            if (slash == Text::npos) {
                result.push_back(candidate);
            } else if (isElement(*candidate)) {
                selectSteps(*candidate, path.substr(slash), result);
            }
        }
    }

    static TNuDOMNode& create(const Text& step, TNuDOMNode& context, bool isDeep) {
        if (isDeep) {
            throw host::Exception(u"It is not possible to use the soCreate option in a // search!");
        }
        const Text name = trim(step.substr(0, step.find(u'[')));
        if (name.empty()) {
            throw host::Exception(u"Invalid path");
        }
        if (name[0] == u'*' || name[0] == u'@') {
            throw host::Exception(
                u"It is not possible to use the soCreate option for the given search path!");
        }
        if (context.get_nodeType() == host::DOCUMENT_NODE) {
            return static_cast<TNuDOMDocument&>(context).CreateRootNode(name);
        }
        return static_cast<TNuDOMElement&>(context).AddElement(name);
    }

    void addMatching(const Text& step, TNuDOMNode& context, Nodes& result, bool isDeep) {
        Text test = step.substr(0, step.find(u'['));
        const std::vector<Text> filters = filtersOf(step);
        if (options_.has(soIgnoreNamespace) && holds(test, u":")) {
            test.erase(0, test.find(u':') + 1);
        }
        Nodes candidates;
        matchName(test, context, candidates, isDeep);
        for (const Text& filter : filters) {
            applyFilter(filter, candidates);
        }
        result.insert(result.end(), candidates.begin(), candidates.end());
    }

    static std::vector<Text> filtersOf(const Text& step) {
        std::vector<Text> filters;
        Text filter;
        int level = 0;
        char16_t quote = 0;
        for (const char16_t unit : step) {
            if (level == 0 && unit != u'[') {
                continue;
            }
            filter += unit;
            if (quote != 0) {
                quote = unit == quote ? char16_t{0} : quote;
            } else if (unit == u'\'' || unit == u'"') {
                quote = unit;
            } else if (unit == u'[') {
                ++level;
            } else if (unit == u']' && --level == 0) {
                filters.push_back(filter);
                filter.clear();
            }
        }
        if (quote != 0) {
            throw host::Exception(u"Unterminated Filtervalue!");
        }
        if (level != 0) {
            throw host::Exception(u"Unterminated Filter!");
        }
        return filters;
    }

    void matchName(const Text& test, TNuDOMNode& context, Nodes& found, bool isDeep) {
        count();
        matchHere(test, context, found);
        if (isDeep) {
            for (TNuDOMNode* child : childrenOf(context)) {
                if (child->get_nodeType() == host::ELEMENT_NODE) {
                    matchName(test, *child, found, true);
                }
            }
        }
    }

    void matchHere(const Text& test, TNuDOMNode& context, Nodes& found) const {
        if (starts(test, u"@")) {
            if (context.get_nodeType() != host::ELEMENT_NODE) {
                return;
            }
            for (TNuDOMAttribute& attribute : static_cast<TNuDOMElement&>(context).Attributes()) {
                if (test == u"@*" ||
                    NuFolded(attribute.get_localName()) == NuFolded(test.substr(1))) {
                    found.push_back(&attribute);
                }
            }
        } else if (starts(test, u"..")) {
            failUnless(test == u"..");
            if (context.get_parentNode() != nullptr) {
                found.push_back(context.get_parentNode());
            }
        } else if (starts(test, u".")) {
            failUnless(test == u".");
            found.push_back(&context);
        } else {
            for (TNuDOMNode* child : childrenOf(context)) {
                if (isMatch(test, *child)) {
                    found.push_back(child);
                }
            }
        }
    }

    static void failUnless(bool isValid) {
        if (!isValid) {
            throw host::Exception(u"Invalid Path");
        }
    }

    bool isMatch(const Text& test, TNuDOMNode& child) const {
        const bool isChildElement = child.get_nodeType() == host::ELEMENT_NODE;
        if (test.empty() || test == u"*") {
            return isChildElement;
        }
        if (NuFolded(test) == u"node()") {
            return true;
        }
        if (NuFolded(test) == u"text()") {
            for (TNuDOMNode* text : isChildElement ? childrenOf(child) : Nodes()) {
                const bool isText = text->get_nodeType() == host::TEXT_NODE ||
                                    text->get_nodeType() == host::CDATA_SECTION_NODE;
                if (isText && !text->get_nodeValue().empty()) {
                    return true;
                }
            }
            return false;
        }
        const Text name =
            options_.has(soIgnoreNamespace) ? child.get_localName() : child.get_nodeName();
        return options_.has(soCaseInsensitive) ? NuFolded(name) == NuFolded(test) : name == test;
    }

    void applyFilter(const Text& filter, Nodes& candidates) {
        const Nodes snapshot = candidates;
        Nodes kept;
        while (!candidates.empty()) {
            count();
            TNuDOMNode* const candidate = candidates.front();
            if (isKept(filter, *candidate, snapshot)) {
                kept.push_back(candidate);
            }
            candidates.erase(candidates.begin());
        }
        candidates = kept;
    }

    bool isKept(const Text& filter, TNuDOMNode& candidate, const Nodes& snapshot) {
        const Text lower = NuFolded(filter);
        const Text inner = filter.substr(1, filter.size() - 2);
        const bool hasOperator = holds(lower, u"=") || holds(lower, u">") || holds(lower, u"<");
        if (starts(lower, u"[.=") || starts(lower, u"[.>") || starts(lower, u"[.<")) {
            return compareOwn(inner, candidate);
        }
        if (starts(lower, u"[@")) {
            return testAttribute(inner.substr(1), candidate, hasOperator);
        }
        if (hasOperator) {
            return starts(lower, u"[string()") ? compareOwn(inner, candidate)
                                               : compareChild(inner, candidate);
        }
        if (lower == u"[last()]") {
            return &candidate == snapshot.back();
        }
        if (lower == u"[first()]") {
            return &candidate == snapshot.front();
        }
        const std::optional<long long> number = integerOf(inner);
        if (number && *number >= 0 && *number <= std::numeric_limits<int>::max()) {
            return std::find(snapshot.begin(), snapshot.end(), &candidate) - snapshot.begin() + 1 ==
                   *number;
        }
        failUnlessElement(candidate, u"You can only specify child filters for DOM Elements!");
        return single(candidate, trim(inner), true) != nullptr;
    }

    static void failUnlessElement(const TNuDOMNode& candidate, std::u16string_view message) {
        if (!isElement(candidate)) {
            throw ENuDomTypeMismatch(message);
        }
    }

    bool testAttribute(const Text& inner, TNuDOMNode& candidate, bool hasOperator) {
        failUnlessElement(candidate, u"You can only specify attribute filters for DOM Elements!");
        if (candidate.get_nodeType() == host::DOCUMENT_NODE) {
            return false;
        }
        const TNuDOMAttribute* attribute =
            static_cast<TNuDOMElement&>(candidate).getAttributeNodeObj(trim(nameOf(inner)),
                                                                       options_);
        return attribute != nullptr && (!hasOperator || compare(inner, attribute->get_nodeValue()));
    }

    bool compareChild(const Text& inner, TNuDOMNode& candidate) {
        failUnlessElement(candidate, u"You can only specify child filters for DOM Elements!");
        for (const TNuDOMNode* child : select(candidate, trim(nameOf(inner)), true)) {
            if (compare(inner, child->get_nodeValue())) {
                return true;
            }
        }
        return false;
    }

    static bool compareOwn(const Text& inner, const TNuDOMNode& candidate) {
        failUnlessElement(candidate, u"You can only specify value filters for DOM Elements!");
        const bool isDocument = candidate.get_nodeType() == host::DOCUMENT_NODE;
        return compare(inner, isDocument ? Text() : candidate.get_nodeValue());
    }

    static Text nameOf(const Text& inner) { return inner.substr(0, inner.find_first_of(u"<=>")); }

    static bool compare(const Text& inner, const Text& value) {
        Text rest = inner.substr(nameOf(inner).size());
        Text sign;
        while (!rest.empty() && (rest[0] == u'<' || rest[0] == u'=' || rest[0] == u'>')) {
            sign += rest[0];
            rest.erase(0, 1);
        }
        Text literal = trim(rest);
        if (!holds(literal, u"'") && !holds(literal, u"\"")) {
            const long long right = integerOrFail(literal);
            return test(sign, integerOrFail(value), right);
        }
        for (const char16_t quote : {u'\'', u'"'}) {
            literal.erase(std::remove(literal.begin(), literal.end(), quote), literal.end());
        }
        return sign == u"=" ? NuFolded(value) == NuFolded(literal) : test(sign, value, literal);
    }

    template <class Value>
    static bool test(const Text& sign, const Value& left, const Value& right) {
        return sign == u"="    ? left == right
               : sign == u">"  ? left > right
               : sign == u">=" ? left >= right
               : sign == u"<"  ? left < right
                               : sign == u"<=" && left <= right;
    }

    static std::optional<long long> integerOf(Text text) {
        while (!text.empty() && text[0] == u' ') {
            text.erase(0, 1);
        }
        const bool isNegative = !text.empty() && text[0] == u'-';
        if (isNegative || (!text.empty() && text[0] == u'+')) {
            text.erase(0, 1);
        }
        if (text.empty() || text.find_first_not_of(u"0123456789") != Text::npos) {
            return std::nullopt;
        }
        __extension__ __int128 value = 0;
        for (const char16_t digit : text) {
            value =
                value > std::numeric_limits<long long>::max() ? value : value * 10 + (digit - u'0');
        }
        value = isNegative ? -value : value;
        if (value < std::numeric_limits<long long>::min() ||
            value > std::numeric_limits<long long>::max()) {
            return std::nullopt;
        }
        return static_cast<long long>(value);
    }

    static long long integerOrFail(const Text& text) {
        const std::optional<long long> value = integerOf(text);
        if (!value) {
            throw host::EConvertError(
                host::formatMessage(u"'%s' is not a valid integer value", {text}));
        }
        return *value;
    }

    void count() {
        if (++work_ > 20'000) {
            throw TooMuch();
        }
    }

    TNuDOMSelectOptions options_;
    int work_ = 0;
};
