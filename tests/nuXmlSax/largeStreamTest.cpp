#include <gtest/gtest.h>

#include <functional>

#include "host/runtime/memoryStream.h"
#include "host/runtime/unicode.h"
#include "nuXmlSax.h"
#include "support/eventTrace.h"
#include "support/oddStream.h"
#include "support/randomText.h"

namespace {

using support::EventTrace;
using support::OddStream;
using support::Positions;

std::string eventsOf(host::TStream& stream, TNuSaxParserChoice choice,
                     Positions positions = Positions::None) {
    TNuSAXXMLReader reader;
    reader.SetParserChoice(choice);
    const auto trace = host::makeRef<EventTrace>(positions);
    trace->attachTo(reader);
    trace->record([&] { reader.Parse(stream); });
    return trace->text();
}

std::string largeEventsOf(std::string_view bytes, Positions positions = Positions::None) {
    host::TMemoryViewStream stream(bytes);
    return eventsOf(stream, TNuSaxParserChoice::LargeStream, positions);
}

/// The end of the input is a character of its own, and every character is a column.
TEST(LargeStream, endsWithACharacterOfItsOwn) {
    struct Case {
        std::string document;
        std::string events;
    };
    for (const Case& item : {
             Case{"", "SD|EP|ED"},
             Case{"<a", "SD|EP|F1:4 name|X fatal name"},
             Case{"<a>", "SD|EP|S a|ED"},
             Case{"<a/", "SD|EP|F1:5 name|X fatal name"}, // the look ahead finds the end
             Case{"<a ", "SD|EP|X fatal eof"},
             Case{"<a b", "SD|EP|W1:6 equal|F1:6 noequal|X fatal noequal"},
             Case{"<a b=\"1", "SD|EP|F1:9 novalue|X fatal novalue"},
             Case{"<a b=\"1\"", "SD|EP|F1:10 unclosed|X fatal unclosed"},
             Case{"<a b=\"1\"/", R"(SD|EP|S a b="1"|E a|W1:11 gt|F1:11 end|X fatal end)"},
             Case{"<a></ab", "SD|EP|S a|E ab|ED"},
             Case{"<a>  ", "SD|EP|S a|T\"  \"|ED"},
             Case{"<a>xy", "SD|EP|S a|T\"xy\"|ED"},
             Case{"<?a", "SD|I a\"\"|X fatal eof"},
             Case{"<a/><!--abc--",
                  R"(SD|EP|S a|E a|W1:16 cend|C"ab"|F1:16 comment|X fatal comment)"},
             Case{"<a><![CDATA[x]", "SD|EP|S a|F1:16 cdata|X fatal cdata"},
             Case{"<a><![CDATA[x]]", "SD|EP|S a|F1:17 cdata|X fatal cdata"},
             Case{"<a><![CDATA[x]]>", "SD|EP|S a|SC|T\"x\"|EC|ED"},
             Case{"<a><![CDATA[x]\n]\t>]]>", R"(SD|EP|S a|SC|T"x"|EC|T"]]>"|ED)"},
             Case{"<!DOCTYPE a", "SD|D a|F1:13 end|X fatal Abort"},
         }) {
        EXPECT_EQ(largeEventsOf("\xEF\xBB\xBF" + item.document), item.events) << item.document;
    }
    // What is looked at counts twice: after the prolog, in the name of an empty element, in CDATA.
    EXPECT_EQ(largeEventsOf("\xEF\xBB\xBF\n<a>\r\n <b/>\n</a>\n", Positions::Events),
              "2:2 SD|2:3 EP|2:5 S a|3:6 S b|3:6 E b|4:5 E a|5:2 ED");
    EXPECT_EQ(largeEventsOf("<a><![CDATA[x]\ny]]></a>", Positions::Events),
              R"(1:1 SD|1:2 EP|1:4 S a|3:7 SC|3:7 T"x]\ny"|3:7 EC|3:11 E a|3:12 ED)");
}

/// A well-formed element in UTF-8, of anything that both sources tell alike.
std::string randomElement(support::Random& random, std::size_t depth) {
    const std::string name = random(3) == 0 ? "p:b" : std::string(1 + random(9), 'a');
    std::string text = "<" + name;
    for (std::size_t count = random(4); count > 0; --count) {
        text += std::string(1 + random(2), ' ') + std::string(count, 'c') + "=\"" +
                std::string(random(9), random(5) == 0 ? '>' : '1') + "\"";
    }
    if (random(3) == 0) {
        return text + "/>";
    }
    text += random(3) == 0 ? ">\n" : ">";
    for (std::size_t count = depth == 0 ? 0 : random(5); count > 0; --count) {
        const std::string pieces[] = {"text \xC3\xA9\xF0\x9F\x98\x80&amp;",
                                      "<!-- a-comment -->",
                                      "<![CDATA[<x>]\xE2\x82\xAC]]>",
                                      "<?pi data?>",
                                      "\n  ",
                                      std::string(random(300), 'x')};
        text +=
            random(2) == 0 ? randomElement(random, depth - 1) : pieces[random(std::size(pieces))];
    }
    return text + "</" + name + ">";
}

TEST(LargeStream, tellsOfWellFormedDocumentsWhatSmallStreamsTell) {
    const std::uint64_t inputs = support::randomInputs(2'000);
    for (std::uint64_t seed = 0; seed < inputs; ++seed) {
        support::Random random(seed);
        const std::string bytes = "\xEF\xBB\xBF<?xml version=\"1.0\"?>\n<!-- c --><p:r "
                                  "xmlns:p=\"u\" xml:space=\"" +
                                  std::string(random(2) == 0 ? "preserve" : "default") + "\">" +
                                  randomElement(random, 6) + "</p:r>\n";
        host::TMemoryViewStream stream(bytes);
        const auto events = [](std::string text) {
            // The faults here are a missing namespace now and then, whose columns may differ.
            std::erase_if(text, [](char unit) { return unit >= '0' && unit <= '9'; });
            return text;
        };
        ASSERT_EQ(events(largeEventsOf(bytes)),
                  events(eventsOf(stream, TNuSaxParserChoice::SmallStream)))
            << bytes;
    }
}

/// A stream that says it is larger than it is shows which source was taken: only the large one does
/// not care.
TEST(LargeStream, isOneOf32MiB) {
    for (const auto& [size, choice, isLarge] :
         {std::tuple{0x2000000, TNuSaxParserChoice::BySize, true},
          std::tuple{0x1FFFFFF, TNuSaxParserChoice::BySize, false},
          std::tuple{0x2000000, TNuSaxParserChoice::SmallStream, false},
          std::tuple{100, TNuSaxParserChoice::LargeStream, true}}) {
        OddStream stream("      <a/>");
        stream.claimedSize = size;
        stream.SetPosition(6); // where it stands does not matter
        EXPECT_EQ(eventsOf(stream, choice),
                  isLarge ? "SD|EP|S a|E a|ED" : "F-1:-1 Stream read error|X abort ");
    }
    OddStream stream("<a><b/>text");
    stream.failsAt = 9;
    stream.readsAtMost = 4;
    EXPECT_EQ(eventsOf(stream, TNuSaxParserChoice::LargeStream),
              "SD|EP|S a|S b|E b|F-1:-1 broken|X abort ");
}

/// Text that never ends: the same piece again and again behind a beginning, and an end.
class EndlessStream final : public host::TStream {
public:
    EndlessStream(std::string start, std::string_view piece, std::int64_t pieces, std::string end)
        : start_(std::move(start)), end_(std::move(end)),
          endPosition_(sizeOf(start_) + pieces * sizeOf(piece)) {
        while (pieces_.size() < 1024 * 1024 || pieces_.size() % piece.size() != 0) {
            pieces_ += piece;
        }
    }

    std::size_t Read(void* buffer, std::size_t count) override {
        const std::string_view rest = at(position_).substr(0, count);
        rest.copy(static_cast<char*>(buffer), rest.size());
        position_ += sizeOf(rest);
        return rest.size();
    }
    std::size_t Write(const void*, std::size_t) override { return 0; }
    std::int64_t Seek(std::int64_t offset, host::SeekOrigin origin) override {
        return position_ = offset + (origin == host::SeekOrigin::Current ? position_
                                     : origin == host::SeekOrigin::End ? endPosition_ + sizeOf(end_)
                                                                       : 0);
    }

private:
    static std::int64_t sizeOf(std::string_view text) {
        return static_cast<std::int64_t>(text.size());
    }
    [[nodiscard]] std::string_view at(std::int64_t position) const {
        const auto from = [](std::string_view text, std::int64_t offset) {
            return text.substr(static_cast<std::size_t>(offset));
        };
        if (position < sizeOf(start_)) {
            return from(start_, position);
        }
        if (position >= endPosition_) {
            return from(end_, std::min(position - endPosition_, sizeOf(end_)));
        }
        return from(pieces_, (position - sizeOf(start_)) % sizeOf(pieces_))
            .substr(0, static_cast<std::size_t>(endPosition_ - position));
    }

    std::string start_, pieces_, end_;
    std::int64_t endPosition_;
    std::int64_t position_ = 0;
};

/// The buffer starts anew at each tag, text and CDATA section, and nowhere else.
TEST(LargeStream, mustFitIntoTheBufferPieceByPiece) {
    constexpr std::int64_t room = 16'777'215;
    struct Case {
        std::string_view name, start, end;
        std::int64_t pieces;
        bool fits;
    };
    // How much of the room the other characters take tells where the buffer starts.
    for (const Case& item : {
             Case{"text", "<a>", "</a>", room - 2, true},
             Case{"text", "<a>", "</a>", room - 1, false},
             Case{"value", "<a b=\"", "\"/>", room - 9, true},
             Case{"value", "<a b=\"", "\"/>", room - 8, false},
             Case{"comment", "<ab><!--", "--></ab>", room - 12, true},
             Case{"comment", "<ab><!--", "--></ab>", room - 11, false},
             Case{"outside", "<a/>", "<b/>", room - 5, true},
             Case{"outside", "<a/>", "<b/>", room - 4, false},
             Case{"prolog", "<?p?>", "<b/>", room - 7, true},
             Case{"prolog", "<?p?>", "<b/>", room - 6, false},
             Case{"many texts", "<a>", "</a>", 3 * room, true},
         }) {
        const bool isMany = item.name == "many texts";
        EndlessStream stream("\xEF\xBB\xBF" + std::string(item.start), isMany ? "xxxx<b/>" : "x",
                             isMany ? item.pieces / 8 : item.pieces, std::string(item.end));
        TNuSAXXMLReader reader;
        reader.SetParserChoice(TNuSaxParserChoice::LargeStream);
        std::string fault;
        bool hasEnded = false;
        reader.OnFatalError = [&](host::ISAXParseError& error) {
            fault = host::utf16ToUtf8(error.getMessage());
        };
        reader.OnEndDocument = [&](TNuSAXXMLReader&) { hasEnded = true; };
        EXPECT_EQ(support::exceptionOf([&] { reader.Parse(stream); }), "") << item.name;
        EXPECT_EQ(hasEnded, item.fits) << item.name << item.pieces;
        EXPECT_EQ(fault,
                  item.fits ? "" : "The buffersize is not large enought to hold all the data!")
            << item.name << item.pieces;
    }
}

} // namespace
