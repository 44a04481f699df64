#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "nuXmlParser/markupBlock.h"
#include "support/eventTrace.h"
#include "support/randomText.h"

/// \file
/// Random operations of a character source and what they give.

namespace support {

/// Does the operation number `operation` and tells what it gave.
template <class Source> std::string perform(Source& source, std::size_t operation, char16_t unit) {
    std::u16string result;
    const std::string failure = exceptionOf([&] {
        switch (operation) {
        case 0:
            result = *source.ReadRawChar();
            break;
        case 1:
            result = *source.ReadXmlChar();
            break;
        case 2:
            result = {*source.PeekXmlChar(), *source.PeekWord(), *source.PeekCardinal()};
            break;
        case 3:
            result = source.peeksAt(u']', unit) ? u"yes" : u"no";
            break;
        case 4:
            source.template readUntil<nu::StopSet::Less>();
            break;
        case 5:
            source.template readUntil<nu::StopSet::Quote>();
            break;
        case 6:
            source.template readUntil<nu::StopSet::Name>();
            break;
        case 7:
            source.template readUntil<nu::StopSet::Solid>();
            break;
        case 8:
            source.ResetBuffer();
            break;
        default:
            source.copyUntil(
                unit, [&](PNuXmlChar run, std::size_t length) { result.append(run, length); });
        }
    });
    return readable(result) + failure;
}

template <class Source> std::string stateOf(Source& source, bool withCounters) {
    std::string state = readable({source.CurrChar(), 1}) + '@' +
                        std::to_string(source.GetStreamPos()) + (source.Eof() ? "!" : "");
    if (withCounters) {
        state += ' ' + std::to_string(source.LineNumber()) + ':' +
                 std::to_string(source.ColumnNumber()) + ';' + std::to_string(source.CharCount());
    }
    return state;
}

/// Does the same random operations with both sources until they disagree or the input has ended.
/// `text` is what they read.
template <class Source, class Plain>
void compareSteps(Random& random, Source& parser, Plain& plain, const std::u16string& text) {
    // Before the first read there is no current character, and in an empty text there never is.
    std::string log;
    std::size_t operation = random(2);
    const std::size_t looks = random(4);
    int left = text.empty() ? 1 : 400;
    while (left > 0) {
        const char16_t unit = u"-]?< >"[random(6)];
        log += std::to_string(operation);
        ASSERT_EQ(perform(parser, operation, unit), perform(plain, operation, unit))
            << log << ' ' << readable(text);
        const bool withCounters = random(4) < looks || left == 1;
        ASSERT_EQ(stateOf(parser, withCounters), stateOf(plain, withCounters))
            << log << ' ' << readable(text);
        operation = random(10);
        left = parser.Eof() ? std::min(left - 1, 4) : left - 1;
    }
}

} // namespace support
