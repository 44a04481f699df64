#include "nuXmlDOM/core/characterData.h"

#include <functional>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "host/runtime/exception.h"
#include "host/runtime/memoryStream.h"
#include "host/runtime/unicode.h"
#include "nuXmlDOM/core/document.h"
#include "nuXmlDOM/core/domErrors.h"
#include "nuXmlDOM/core/domString.h"
#include "support/oddStream.h"

namespace {

using namespace std::string_view_literals;
using Node = TNuDOMCharacterData;

constexpr std::ptrdiff_t far = std::numeric_limits<std::ptrdiff_t>::max();

/// What happens to a node; gives what is to be seen of it.
using Step = std::function<NuXmlString(Node&)>;

Step set(std::u16string_view text) {
    return [=](Node& node) { return node.set_data(text), NuXmlString(); };
}
Step append(std::u16string_view text) {
    return [=](Node& node) { return node.appendData(text), NuXmlString(); };
}
Step insert(std::ptrdiff_t offset, std::u16string_view text) {
    return [=](Node& node) { return node.insertData(offset, text), NuXmlString(); };
}
Step cut(std::ptrdiff_t offset, std::ptrdiff_t count) {
    return [=](Node& node) { return node.deleteData(offset, count), NuXmlString(); };
}
Step replace(std::ptrdiff_t offset, std::ptrdiff_t count, std::u16string_view text) {
    return [=](Node& node) { return node.replaceData(offset, count, text), NuXmlString(); };
}
Step part(std::ptrdiff_t offset, std::ptrdiff_t count) {
    return [=](Node& node) { return u"[" + node.substringData(offset, count) + u"]"; };
}
Step load(std::u16string_view text) {
    return
        [=](Node& node) { return node._LoadFromBuffer(text.data(), text.size()), NuXmlString(); };
}

/// Runs the steps and gives what was seen, "!R" (read error), "!S" (seek error), "!C" (refused
/// characters) or "!V" (conversion error) where one failed, and the value at the end.
NuXmlString outcomeOf(Node& node, const std::vector<Step>& steps) {
    NuXmlString seen;
    for (const Step& step : steps) {
        try {
            seen += step(node);
        } catch (const host::EReadError&) {
            seen += u"!R";
        } catch (const host::EStreamError& error) {
            seen += error.Message() == u"Stream seek error" ? u"!S" : u"!?";
        } catch (const ENuDomInvalidCharacter&) {
            seen += u"!C";
        } catch (const host::EConvertError&) {
            seen += u"!V";
        }
    }
    seen += node.get_data();
    if (node.get_length() != node.get_data().size()) {
        seen += u" length?";
    }
    return seen;
}

struct Case {
    std::u16string_view start;
    std::vector<Step> steps;
    std::u16string_view outcome;
};

template <class Make> void checkAll(const std::vector<Case>& cases, Make make) {
    for (std::size_t index = 0; index < cases.size(); ++index) {
        const auto node = make(cases[index].start);
        EXPECT_EQ(outcomeOf(*node, cases[index].steps), cases[index].outcome) << "case " << index;
    }
}

TEST(DomText, editsWhatIsMeant) {
    const NuRef<TNuDOMDocument> document = TNuDOMDocument::Create();
    const std::vector<Case> cases = {
        {u"a<b", {}, u"a<b"},
        {u"A\0B"sv, {append(u"\0C"sv), append(u"<\0"sv)}, u"ABC<"},
        // Offsets of parts count from 1, all others from 0.
        {u"abcdef", {part(0, 2), part(1, 2), part(2, 2), part(-5, 2)}, u"[ab][ab][bc][ab]abcdef"},
        {u"a&cdef",
         {part(2, 2), part(6, far), part(7, 1), part(far, 1), part(1, -1)},
         u"[&c][f][][][]a&cdef"},
        {u"abcdef", {part(6, far), part(far, far)}, u"[f][]abcdef"},
        {u"abcdef", {insert(2, u"X")}, u"abXcdef"},
        {u"abcdef", {insert(-1, u"X"), insert(far, u"Y"), insert(3, u"")}, u"XabcdefY"},
        {u"abcdef", {cut(1, 2)}, u"adef"},
        {u"abcdef", {cut(2, far), cut(far, far)}, u"ab"},
        {u"abcdef", {cut(-1, 3)}, u"cdef"},
        {u"abcdef", {replace(1, 2, u"XY")}, u"aXYdef"},
        {u"abcdef", {replace(1, 2, u"")}, u"adef"},
        {u"a<b>c", {insert(2, u"&"), cut(0, 1), append(u"'\"")}, u"<&b>c'\""},
        {u"abc", {append(u"\u0416"), append(u"d"), cut(0, 1)}, u"bc\u0416d"},
        // What is loaded is in its written form.
        {u"", {load(u"x&#60;y"), load(u"&lt;&foo;"), append(u"<")}, u"x<y<&foo;<"},
        {u"", {load(u"&#12z;"), append(u"x"), part(1, 1), set(u"new")}, u"!V!Vnew"},
    };
    checkAll(cases, [&](auto start) { return document->createTextNode(start); });
}

TEST(DomText, keepsTheWrittenForm) {
    const NuRef<TNuDOMDocument> document = TNuDOMDocument::Create();
    const NuRef<TNuDOMText> text = document->createTextNode(u"it's");
    EXPECT_EQ(text->get_xml(), u"it&apos;s");
    text->appendData(u" <&");
    EXPECT_EQ(text->get_xml(), u"it&apos;s &lt;&amp;");
    // A loaded form stays until the text is edited, be it by nothing.
    const NuRef<TNuDOMText> loaded = document->createTextNode(u"");
    constexpr std::u16string_view form = u"&eacute;&foo;'&#10;";
    loaded->_LoadFromBuffer(form.data(), form.size());
    EXPECT_EQ(loaded->get_xml(), form);
    loaded->appendData(u"");
    EXPECT_EQ(loaded->get_xml(), u"\u00E9&amp;foo;&apos;\n");
}

TEST(DomCDATA, isKeptAsItIsAndChecked) {
    const NuRef<TNuDOMDocument> document = TNuDOMDocument::Create();
    const std::vector<Case> cases = {
        {u"a<b&lt;", {}, u"a<b&lt;"},
        {u"&a;\0"sv, {part(2, 3), insert(1, u"<")}, u"[a;\0]&<a;\0"sv},
        {u"x]]>", {}, u"x]]>"},
        {u"a", {set(u"a<![")}, u"a<!["},
        {u"a", {set(u"]]>x")}, u"!C"},
        {u"a", {set(u"abc]]>")}, u"!C"},
        {u"a", {set(u"<![")}, u"!C"},
        {u"a", {set(u"]]")}, u"]]"},
        // The whole is checked again, wherever the change is.
        {u"abc]", {append(u"]>")}, u"!C"},
        {u"abcd", {append(u"]]>")}, u"abcd]]>"},
        {u"abc", {append(u"d]]>ef<![")}, u"!C"},
        {u"x]]>", {cut(0, 1)}, u"!C"},
        {u"", {load(u"<![x"), append(u"y")}, u"!C"},
        {u"abc", {load(u"]]>"), append(u"y")}, u"!C"},
    };
    checkAll(cases, [&](auto start) { return document->createCDATASection(start); });
}

TEST(DomComment, followsThePositionOfAStream) {
    const NuRef<TNuDOMDocument> document = TNuDOMDocument::Create();
    const std::vector<Case> cases = {
        // A part moves the position, and what is appended goes there.
        {u"abcdef", {part(0, 2), append(u"XY")}, u"[ab]abXYef"},
        {u"abcdef", {part(0, 2), append(u""), append(u"X"), append(u"Y")}, u"[ab]abXYef"},
        {u"abcdef", {part(4, far), append(u"X")}, u"[ef]abcdefX"},
        {u"abcdef", {part(1, -1), append(u"X")}, u"[]aXcdef"},
        {u"ab", {part(4, 1), append(u""), append(u"X")}, u"[]ab\0\0X"sv},
        {u"ab", {part(-1, 1), append(u"X")}, u"!SabX"},
        {u"abcdef", {part(0, 2), set(u"new"), append(u"X")}, u"[ab]newX"},
        {u"abcdef", {part(0, 2), load(u"g"), append(u"X")}, u"[ab]abcdefgX"},
        {u"abcdef", {part(0, 5), append(u"XYZ"), append(u"!")}, u"[abcde]abcdeXYZ!"},
        // Inserting shifts by one, and a count of 0 copies all.
        {u"abcdef", {insert(2, u"X")}, u"aXbcde"},
        {u"abcdef", {insert(0, u"X")}, u"Xabcdef"},
        {u"abcdef", {insert(1, u"X"), append(u"Y")}, u"!RabcdefY"},
        {u"a", {insert(1, u"X")}, u"aXa"},
        {u"", {insert(0, u"X"), insert(2, u"Y")}, u"!RX"},
        {u"abcdef", {insert(6, u"X")}, u"abcdeXabcdef"},
        {u"abcdef", {insert(7, u"X"), insert(8, u"X"), insert(far, u"X")}, u"!R!R!Rabcdef"},
        {u"abcdef", {insert(-1, u"X"), insert(-far, u"X")}, u"!R!Rabcdef"},
        {u"abcdef", {part(0, 1), insert(3, u"X"), append(u"Y")}, u"[a]abXcdeY"},
        {u"abcdef", {part(0, 1), insert(3, u""), append(u"Y")}, u"[a]aYcdef"},
        // So does deleting what reaches the end.
        {u"abcdef", {cut(1, 2)}, u"adef"},
        {u"abcdef", {part(0, 1), cut(0, 2), append(u"X")}, u"[a]cdefX"},
        {u"abcdef", {cut(2, 4)}, u"ababcdef"},
        {u"abcdef", {cut(0, 6)}, u"abcdef"},
        {u"abcdef", {cut(6, 0)}, u"abcdefabcdef"},
        {u"abcdef",
         {cut(7, 0), cut(2, 5), cut(2, far), cut(1, -2), cut(far, far)},
         u"!R!R!R!R!Rabcdef"},
        {u"abcdef", {cut(3, -1)}, u"abccdef"},
        // Replacing writes over.
        {u"abcdef", {replace(1, 5, u"X")}, u"aXcdef"},
        {u"abcdef", {replace(1, 5, u"X"), append(u"YZ")}, u"aXYZef"},
        {u"abcdef", {replace(5, 0, u"XYZ"), append(u"!")}, u"abcdeXYZ!"},
        {u"abcdef", {replace(1, 2, u""), append(u"!")}, u"abcdef!"},
        {u"ab", {replace(4, 0, u"X")}, u"ab\0\0X"sv},
        {u"ab", {replace(-1, 0, u"X")}, u"!Sab"},
        // Only a whole value is checked, and only in pairs.
        {u"a--b", {append(u"--"), replace(0, 0, u"--")}, u"---b--"},
        {u"&lt;'\u0416", {}, u"&lt;'\u0416"},
    };
    checkAll(cases, [&](auto start) { return document->createComment(start); });

    for (const std::u16string_view refused : {u"--ab", u"ab--", u"a---b", u"--", u"---"}) {
        const NuRef<TNuDOMComment> comment = document->createComment(u"old");
        EXPECT_EQ(outcomeOf(*comment, {part(0, 1), set(refused), append(u"X")}), u"[o]!CX");
    }
}

TEST(DomCharacterData, saysWhatItRefuses) {
    const NuRef<TNuDOMDocument> document = TNuDOMDocument::Create();
    const auto messageOf = [](auto&& act) {
        try {
            act();
        } catch (const host::Exception& error) {
            return error.Message();
        }
        return NuXmlString(u"nothing");
    };
    EXPECT_EQ(messageOf([&] { (void)document->createComment(u"--"); }),
              u"A comment may not contain \"--\"");
    EXPECT_EQ(messageOf([&] { (void)document->createCDATASection(u"]]>"); }),
              u"A CDATA element may not contain \"<![\" or \"]]>\"");
    for (const TNuDOMNodeClass* item :
         {&TNuDOMText::Class, &TNuDOMCDATA::Class, &TNuDOMComment::Class,
          &TNuDOMProcessingInstruction::Class}) {
        EXPECT_THROW(item->create(nullptr), host::EAssertionFailed);
        EXPECT_EQ(messageOf([&] { item->create(nullptr); }).find(u"A owner document is required!"),
                  0U);
    }
}

TEST(DomCharacterData, loadsTheRestOfAStream) {
    const NuRef<TNuDOMDocument> document = TNuDOMDocument::Create();
    const NuRef<TNuDOMText> text = document->createTextNode(u"a");
    host::TMemoryStream stream(support::utf16Bytes(u"skipped&lt;\u0416"));
    stream.SetPosition(14);
    text->_LoadFromStream(stream);
    text->_LoadFromStream(stream); // nothing is left
    EXPECT_EQ(text->get_data(), u"a<\u0416");

    const NuXmlString large(100000, u'x');
    support::OddStream slow(support::utf16Bytes(large) + "?");
    slow.readsAtMost = 4097;
    text->_LoadFromStream(slow);
    EXPECT_EQ(text->get_data(), u"a<\u0416" + large);

    support::OddStream broken(support::utf16Bytes(large));
    broken.failsAt = 70000;
    EXPECT_THROW(text->_LoadFromStream(broken), host::EReadError);
    EXPECT_EQ(text->get_length(), large.size() + 3);
}

/// Would not end in any sensible time if each append looked at the whole.
TEST(DomCharacterData, growsByManyAppends) {
    const NuRef<TNuDOMDocument> document = TNuDOMDocument::Create();
    const NuRef<TNuDOMComment> comment = document->createComment(u"ab");
    (void)comment->substringData(0, 2);
    const NuRef<TNuDOMText> loaded = document->createTextNode(u"");
    loaded->_LoadFromBuffer(u"ab", 2);
    const std::vector<NuRef<Node>> nodes = {document->createTextNode(u"ab"),
                                            document->createTextNode(u"\u0416b"),
                                            document->createCDATASection(u"ab"), comment, loaded};
    constexpr std::size_t times = 300000;
    for (const NuRef<Node>& node : nodes) {
        for (std::size_t count = 0; count < times; ++count) {
            node->appendData(u"<12345>");
        }
        EXPECT_EQ(node->get_length(), 2 + 7 * times);
    }
}

NuXmlString childrenOf(TNuDOMElement& element) {
    NuXmlString all;
    for (TNuDOMNode& child : element.ChildNodes()) {
        all += child.get_nodeName() + u":" + child.get_nodeValue() + u" ";
    }
    return all;
}

TEST(DomText, splits) {
    const NuRef<TNuDOMDocument> document = TNuDOMDocument::Create();
    TNuDOMElement& root = document->CreateRootNode(u"r");
    root.AddElement(u"e");
    TNuDOMCDATA& section = root.AddCDATA(u"ab<d");
    root.AddComment(u"c");
    EXPECT_EQ(section.splitText(2)->get_xml(), u"&lt;d");
    EXPECT_EQ(childrenOf(root), u"e: #cdata-section:ab #text:<d #comment:c ");
    EXPECT_EQ(root.get_text(), u"ab<d");

    const NuRef<TNuDOMText> text = document->createTextNode(u"x&y");
    root.appendChild(*text);
    EXPECT_EQ(text->splitText(99)->get_data(), u"");
    EXPECT_EQ(text->splitText(-1)->get_data(), u"x&y");
    EXPECT_EQ(childrenOf(root),
              u"e: #cdata-section:ab #text:<d #comment:c #text: #text:x&y #text: ");

    const NuRef<TNuDOMText> outside = document->createTextNode(u"abcd");
    const NuRef<TNuDOMText> rest = outside->splitText(1);
    EXPECT_EQ(outside->get_data() + u"|" + rest->get_data(), u"a|bcd");
    EXPECT_EQ(rest->get_parentNode(), nullptr);
}

TEST(DomProcessingInstruction, readsAndWritesPairs) {
    const NuRef<TNuDOMDocument> document = TNuDOMDocument::Create();
    struct Read {
        std::u16string_view data;
        std::u16string_view found;
    };
    for (const Read& item : {
             Read{u"type=\"text/css\" href=\"a.css\"", u""},
             Read{u"x=\"1\" p:style=\"2\" p:style=\"3\"", u"2"},
             Read{u"x=\"1\" P:STYLE=\"2\"", u""},
             Read{u"p:styles y=\"1\"", u"1"},
             Read{u"p:style=\"rest of it", u"rest of it"},
             Read{u"p:style='1'", u""},
             Read{u"", u""},
         }) {
        const auto instruction = document->createProcessingInstruction(u"p:style", item.data);
        EXPECT_EQ(instruction->getAttribute(u"type"), item.found);
        EXPECT_EQ(instruction->get_target() + instruction->get_data(),
                  u"p:style" + NuXmlString(item.data));
    }

    struct Write {
        std::u16string_view data;
        std::u16string_view name;
        std::u16string_view value;
        std::u16string_view result;
    };
    for (const Write& item : {
             Write{u"", u"a", u"1", u"a=\"1\" "},
             Write{u"version=\"1.0\"", u"encoding", u"UTF-8",
                   u"version=\"1.0\" encoding=\"UTF-8\" "},
             Write{u"\t a=\"1\"\r\nb=\"2\" A=\"3\" rest", u"A", u"x", u"A=\"x\" b=\"2\" A=\"3\" "},
             Write{u"a='1' b=\"2\" c='3'", u"b", u"4", u"a='1' b=\"2\" b=\"4\" "},
             Write{u"\"1\" a =\"2\"", u"a", u"3", u"\"1\" a =\"2\" a=\"3\" "},
             Write{u"a=\"1\r\n\r\n2\n\"", u"b", u"\r\n?>", u"a=\"1  2\n\" b=\" ?>\" "},
             Write{u"\u00E4=\"1\"", u"\u00C4", u"\"", u"\u00C4=\"\"\" "},
         }) {
        const auto instruction = document->createProcessingInstruction(u"p", item.data);
        instruction->setAttribute(item.name, item.value);
        EXPECT_EQ(instruction->get_nodeValue(), item.result);
    }
}

TEST(DomString, checksWhatIsWritten) {
    TNuDOMName name;
    TNuDOMAttribValue attribute;
    TNuDOMValue value;
    struct Write {
        TNuDOMString& string;
        std::u16string_view text;
        std::u16string_view message; // "" where the text is taken
    };
    for (const Write& item : {
             Write{name, u"a:b", u"Invalid XML Name"},
             Write{name, u"a b", u"Invalid XML Name"},
             Write{name, u":", u"Invalid XML Name"},
             Write{name, u"1abc", u""},
             Write{name, u"\u013A\u0120<&\t", u""},
             Write{name, u"", u""},
             Write{attribute, u"say \"hi\"", u"Invalid attribute value"},
             Write{attribute, u"it's <&\u0122", u""},
             Write{value, u"a\0\": "sv, u""},
         }) {
        NuXmlString message;
        const NuXmlString kept =
            item.message.empty() ? u"oldnew" + NuXmlString(item.text) : u"oldnew";
        item.string.SetAsDOMString(u"old");
        item.string.WriteSaxBuffer(u"new", 6);
        try {
            item.string.WriteSaxBuffer(item.text.data(), 2 * item.text.size());
        } catch (const ENuDomInvalidCharacter& error) {
            message = error.Message();
        }
        EXPECT_EQ(message, item.message);
        EXPECT_EQ(item.string.GetAsDomString(), kept);
        try {
            item.string.SetAsDOMString(item.text);
        } catch (const ENuDomInvalidCharacter&) {
        }
        EXPECT_EQ(item.string.GetAsDomString(), item.message.empty() ? item.text : u"");
    }
}

TEST(DomString, trimsSpacesOnly) {
    for (const auto& [text, trimmed] :
         std::vector<std::pair<std::u16string_view, std::u16string_view>>{{u"  a b  ", u"a b"},
                                                                          {u"\ta\t", u"\ta\t"},
                                                                          {u" \u00A0 ", u"\u00A0"},
                                                                          {u"a", u"a"},
                                                                          {u"   ", u""},
                                                                          {u"", u""}}) {
        TNuDOMValue value;
        value.SetAsDOMString(text);
        value.Trim();
        value.WriteSaxBuffer(u"!", 2);
        EXPECT_EQ(value.GetAsDomString(), NuXmlString(trimmed) + u"!");
    }
}

} // namespace
