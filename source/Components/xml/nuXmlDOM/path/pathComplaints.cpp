#include "nuXmlDOM/path/pathComplaints.h"

#include <algorithm>
#include <array>

#include "common/caseFolding.h"
#include "host/runtime/format.h"
#include "nuXmlDOM/path/pathMessages.h"

namespace nu {

namespace {

constexpr std::u16string_view operatorUnits = u"<=>";
constexpr std::array<std::u16string_view, 5> operators{u"=", u">", u">=", u"<", u"<="};

NuXmlString noSuch(std::u16string_view kind, std::u16string_view name) {
    return host::formatMessage(messages::noSuchInPaths, {kind, name});
}

bool isFunction(std::u16string_view name) {
    const auto isCalled = [name](const auto& function) {
        return NuEqualFolded(function.name, name);
    };
    return std::any_of(testFunctions.begin(), testFunctions.end(), isCalled) ||
           std::any_of(filterFunctions.begin(), filterFunctions.end(), isCalled) ||
           NuEqualFolded(ownValueFunction, name);
}

/// A function as it is called: its name is what stands before the bracket.
NuXmlString complaintAboutCall(std::u16string_view text) {
    const std::size_t bracket = text.find(u'(');
    if (bracket == text.npos) {
        return {};
    }
    const std::u16string_view before = text.substr(0, bracket);
    const std::size_t blank = before.find_last_of(u" ,(");
    const std::u16string_view name = before.substr(blank == before.npos ? 0 : blank + 1);
    return isFunction(name) ? host::formatMessage(messages::noSuchPlaceInPaths, {text})
                            : noSuch(u"function", NuXmlString(name) + u"()");
}

} // namespace

NuXmlString complaintAboutTest(std::u16string_view test) {
    if (findCall(testFunctions, test) != nullptr) {
        return {};
    }
    const std::size_t axis = test.find(u"::");
    if (axis != test.npos) {
        return noSuch(u"axis", test.substr(0, axis + 2));
    }
    const NuXmlString complaint = complaintAboutCall(test);
    return complaint.empty() ? complaintAboutName(test) : complaint;
}

NuXmlString complaintAboutName(std::u16string_view name) {
    if (NuXmlString words = complaintAboutWords(name); !words.empty()) {
        return words;
    }
    if (name.find(u'|') != name.npos) {
        return NuXmlString(messages::barWithoutBlanks);
    }
    return name.find(cNuSpace) == name.npos
               ? NuXmlString()
               : host::formatMessage(messages::blankInPathName, {name});
}

NuXmlString complaintAboutComparison(std::u16string_view comparison) {
    // 1. The operator; what is no equality elsewhere ends the name here.
    const std::size_t first = comparison.find_first_of(operatorUnits);
    const std::size_t behind =
        std::min(comparison.find_first_not_of(operatorUnits, first), comparison.size());
    if (first > 0 && comparison[first - 1] == u'!') {
        return noSuch(u"operator", comparison.substr(first - 1, behind - first + 1));
    }
    const std::u16string_view used = comparison.substr(first, behind - first);
    if (std::find(operators.begin(), operators.end(), used) == operators.end()) {
        return noSuch(u"operator", used);
    }
    // 2. What it is compared with.
    const std::u16string_view literal = comparison.substr(behind);
    if (literal.find_first_of(u"'\"") == literal.npos) {
        return complaintAboutCall(literal);
    }
    return complaintAboutWords(literal);
}

std::u16string_view textOf(PathMistake mistake) noexcept {
    switch (mistake) {
    case PathMistake::None:
        break;
    case PathMistake::InvalidPath:
        return messages::invalidPathStep;
    case PathMistake::OpenQuote:
        return messages::unterminatedFilterValue;
    case PathMistake::OpenBracket:
        return messages::unterminatedFilter;
    }
    return {};
}

NuXmlString complaintAboutWords(std::u16string_view text) {
    NuXmlChar quote = 0;
    for (std::size_t place = 0; place < text.size(); ++place) {
        const NuXmlChar unit = text[place];
        if (quote != 0) {
            quote = unit == quote ? NuXmlChar{0} : quote;
        } else if (unit == cNuApos || unit == cNuQuote) {
            quote = unit;
        } else if (unit == cNuSpace) {
            for (const std::u16string_view word : {u" and ", u" or "}) {
                if (text.substr(place).starts_with(word)) {
                    return noSuch(u"operator", word.substr(1, word.size() - 2));
                }
            }
        }
    }
    return {};
}

} // namespace nu
