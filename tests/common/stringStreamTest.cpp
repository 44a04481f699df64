#include "common/stringStream.h"

#include <gtest/gtest.h>

#include "common/codePage.h"
#include "host/runtime/exception.h"

namespace {

TEST(StringStream, appendsAtTheEndWhateverThePosition) {
    TNuStringStream stream(2, 1);
    stream.AddString(u"ab");
    stream.SetPosition(0);
    stream.AddString(u"cd");
    EXPECT_EQ(stream.GetPosition(), 8);
    stream.SetPosition(2);
    stream.AddChar(u'\0');
    EXPECT_EQ(stream.Length(), 5U);
    EXPECT_EQ(stream.GetAsWideString(), std::u16string(u"abcd\0", 5));
    EXPECT_EQ(stream.WideView(), stream.GetAsWideString());

    stream.SetPosition(2);
    stream.WriteBuffer(u"X", 2); // as any stream, in between
    stream.SetSize(7);           // half a character does not count
    EXPECT_EQ(stream.Length(), 3U);
    EXPECT_EQ(stream.GetAsWideString(), u"aXc");
}

TEST(StringStream, convertsTextOfTheOtherWidth) {
    NuSetSystemCodePage(1252);
    TNuStringStream wide(2);
    wide.AddString("\x80|");
    wide.AddString(u"\u0416");
    EXPECT_EQ(wide.GetAsWideString(), u"\u20AC|\u0416");
    EXPECT_EQ(wide.GetAsAnsiString(), "\x80|?");
    TNuStringStream narrow(1);
    narrow.AddString(u"\u20AC|\u0416");
    narrow.AddString("\xFF");
    EXPECT_EQ(narrow.Length(), 4U);
    EXPECT_EQ(narrow.GetAsAnsiString(), "\x80|?\xFF");
    EXPECT_EQ(narrow.GetAsWideString(), u"\u20AC|?\u00FF");
    EXPECT_EQ(narrow.WideView(), u"");
    NuSetSystemCodePage(0);
}

TEST(StringStream, holdsGivenTextFromItsStart) {
    TNuStringStream stream(u"\u20ACb");
    EXPECT_EQ(stream.StringType(), 2);
    EXPECT_EQ(stream.GetPosition(), 0);
    EXPECT_EQ(stream.WideView(), u"\u20ACb");
    EXPECT_EQ(TNuStringStream(2).GetAsWideString(), u"");
    EXPECT_EQ(TNuStringStream(1, 0).GetAsAnsiString(), "");
    for (const TNuStringType width : {TNuStringType{0}, TNuStringType{3}}) {
        EXPECT_THROW(TNuStringStream{width}, host::Exception);
    }
}

} // namespace
