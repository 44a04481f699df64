// Four times as much must cost four times the time, whatever somebody has sent: every way to read,
// load and write meets every shape that tempts it into more, and so does work on trees with many
// nodes, handles, lists and documents. Prints the ratio of the times.

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "common/utf8.h"
#include "host/runtime/memoryStream.h"
#include "nuObj2Xml.h"
#include "nuXmlDOM.h"
#include "nuXmlParser.h"
#include "nuXmlSax.h"

namespace {

/// Makes the work for a size; what it gives is timed.
using Prepare = std::function<std::function<void()>(std::size_t count)>;

std::string repeated(std::string_view piece, std::size_t count) {
    std::string text;
    text.reserve(piece.size() * count);
    for (std::size_t index = 0; index < count; ++index) {
        text += piece;
    }
    return text;
}

/// The piece `count` times, with each number in place of its "#".
std::string numbered(std::string_view piece, std::size_t count) {
    std::string text;
    for (std::size_t index = 0; index < count; ++index) {
        for (const char unit : piece) {
            text += unit == '#' ? std::to_string(index) : std::string(1, unit);
        }
    }
    return text;
}

// Texts

struct Shape {
    const char* head;
    const char* piece; ///< with "#" for a number
    const char* tail;
};

constexpr Shape shapes[] = {
    // well-formed
    {"<r>", "<i a='1'/>", "</r>"},
    {"<r>", "<i a=\"#\">#</i>", "</r>"},
    {"<r>", "<i#/>", "</r>"},
    {"<r>", "<i xmlns='u#'/>", "</r>"},
    {"<r", " a#=\"1\"", "/>"},
    {"<r", " xmlns:p#=\"u\"", "/>"},
    {"<r a=\"", "&lt;&#65;", "\"/>"},
    {"<r>", "&lt;&#65;", "</r>"},
    {"<r>", "\xE2\x82\xAC\n", "</r>"},
    {"<r>", "]]", "</r>"},
    {"<r>", "<!--c-->", "</r>"},
    {"<r>", "<![CDATA[]]>", "</r>"},
    {"<r>", "<?q w?>", "</r>"},
    {"<r>", "x<b/>", "</r>"},
    {"<!DOCTYPE r [", "<!ENTITY e# '#'>", "]><r>&e1;</r>"},
    {"<!DOCTYPE r [", "<!ATTLIST r a# CDATA '#'>", "]><r/>"},
    {"<!DOCTYPE r [", "<!ELEMENT e# (a|b)*>", "]><r/>"},
    {"<!DOCTYPE r [<!ENTITY e 'x'>]><r>", "&e;", "</r>"},
    // not
    {"", "<i>", ""},
    {"", "<i a=\"#\" xmlns:p#=\"u\">", ""},
    {"", "</i>", ""},
    {"<r/>", "<r/>", ""},
    {"<r>", "<", ""},
    {"<r>", "&", ""},
    {"<r>", "&a", ""},
    {"<r>", "]]>", ""},
    {"<r>", "<!--", ""},
    {"<r>", "<!-- --", ""},
    {"<r>", "<![CDATA[", ""},
    {"<r>", "<![CDATA[]]", ""},
    {"<r>", "<?q", ""},
    {"<r>", "<a b='", ""},
    {"<r>", "<a b=\"", ""},
    {"<r ", "a=\"1\" ", "/>"},
    {"<r ", "a='", ""},
    {"<r ", "=", "/>"},
    {"<r ", "\"", "/>"},
    {"<", "a", "/>"},
    {"<", "a:", "/>"},
    {"<r", " ", "/>"},
    {"<!DOCTYPE r [", "<!ENTITY e", "]>"},
    {"<!DOCTYPE r [", "[", "]>"},
    {"<!DOCTYPE r [", "<!ENTITY % e# '%e;'>", "]><r/>"},
};

template <class Work> void ignoringFaults(Work&& work) {
    try {
        work();
    } catch (const host::Exception&) {
    }
}

void read(std::string_view text, TNuSaxParserChoice choice, bool isConforming) {
    TNuSAXXMLReader reader;
    reader.SetParserChoice(choice);
    if (isConforming) {
        reader.SetConforming({});
    }
    reader.OnStartElement = [](auto&, auto&, auto&, auto&, host::IAttributes& attributes) {
        static_cast<void>(attributes.getLength());
    };
    reader.ParseBytes(text);
}

NuRef<TNuDOMDocument> load(std::string_view text) {
    NuRef<TNuDOMDocument> document = TNuDOMDocument::Create();
    host::TMemoryViewStream stream(text);
    ignoringFaults([&] { document->LoadFromStream(stream); });
    return document;
}

struct Reading {
    const char* name;
    void (*run)(std::string_view text);
};

constexpr Reading readings[] = {
    {"events", [](std::string_view text) { read(text, TNuSaxParserChoice::SmallStream, false); }},
    {"events of blocks",
     [](std::string_view text) { read(text, TNuSaxParserChoice::LargeStream, false); }},
    {"events, conforming",
     [](std::string_view text) { read(text, TNuSaxParserChoice::BySize, true); }},
    {"fragment", [](std::string_view text) { TNuSAXXMLReader().ParseFragment(NuFromUtf8(text)); }},
    {"check",
     [](std::string_view text) {
         host::TMemoryViewStream stream(text);
         NuCheckXML(stream);
     }},
    {"load", [](std::string_view text) { load(text); }},
    {"load with a report",
     [](std::string_view text) {
         TNuLoadReport report;
         host::TMemoryViewStream stream(text);
         TNuDOMDocument::Create()->LoadFromStream(stream, report);
     }},
    {"load and write",
     [](std::string_view text) {
         const auto document = load(text);
         document->SetEncoding(u"ISO-8859-1");
         host::TMemoryStream out;
         document->SaveToStream(out);
     }},
    {"escape and unescape",
     [](std::string_view text) { static_cast<void>(NuXMLToStr(NuStrToXML(text))); }},
    {"unescape", [](std::string_view text) { static_cast<void>(NuXMLToStr(text)); }},
};

// Trees

using Nodes = std::vector<TNuDOMElement*>;

/// An element with many of its kind below it, side by side or in each other, and all of them.
struct Tree {
    NuRef<TNuDOMDocument> document = NuCreateDOMDocument(u"<r/>");
    TNuDOMElement& root = *document->GetRootNode();
    Nodes nodes;
    std::vector<NuRef<TNuDOMElement>> held;

    Tree(std::size_t count, bool isDeep) {
        TNuDOMElement* place = &root;
        for (std::size_t index = 0; index < count; ++index) {
            nodes.push_back(&place->AddElement(u"i"));
            place = isDeep ? nodes.back() : place;
        }
    }
    void holdAll() { held.assign(nodes.begin(), nodes.end()); }
};
using TreeOf = std::shared_ptr<Tree>;

struct Edit {
    const char* name;
    bool isDeep;
    void (*prepare)(Tree& tree);
    void (*run)(Tree& tree);
};

/// Works on the document, which frees what handles have left behind.
void settle(Tree& tree) { static_cast<void>(tree.document->createTextNode(u"")); }
void nothing(Tree& /*tree*/) {}
void hold(Tree& tree) { tree.holdAll(); }
void holdOutside(Tree& tree) {
    tree.holdAll();
    tree.root.RemoveElement(*tree.nodes.front());
}

constexpr Edit edits[] = {
    {"remove from the front", false, nothing,
     [](Tree& tree) {
         while (TNuDOMNode* child = tree.root.get_firstChild()) {
             child->_delete();
         }
     }},
    {"remove from the back, listed", false,
     [](Tree& tree) { static_cast<void>(tree.root.get_childNodes().Count()); },
     [](Tree& tree) {
         while (TNuDOMNode* child = tree.root.get_lastChild()) {
             child->_delete();
         }
     }},
    {"index of each, from the front", false, nothing,
     [](Tree& tree) {
         for (const TNuDOMElement* node : tree.nodes) {
             static_cast<void>(node->get_index());
         }
     }},
    {"items of a list", false, nothing,
     [](Tree& tree) {
         const TNuDOMNodeList& list = tree.root.get_childNodes();
         for (std::size_t index = 0; index < tree.nodes.size(); ++index) {
             static_cast<void>(list.GetItem(static_cast<std::ptrdiff_t>(index)));
         }
     }},
    {"attributes by name", false, nothing,
     [](Tree& tree) {
         for (std::size_t index = 0; index < tree.nodes.size(); ++index) {
             tree.root.setAttribute(u"a" + NuInt64ToXML(static_cast<std::int64_t>(index)), u"v");
         }
         for (std::size_t index = 0; index < tree.nodes.size(); ++index) {
             tree.root.removeAttribute(u"a" + NuInt64ToXML(static_cast<std::int64_t>(index)));
         }
     }},
    {"text of many pieces", false,
     [](Tree& tree) {
         for (TNuDOMElement* node : tree.nodes) {
             tree.root.insertBefore(*tree.document->createTextNode(u"text"), node);
         }
     },
     [](Tree& tree) {
         static_cast<void>(tree.root.get_text());
         tree.root.set_text(u"one");
     }},
    {"let go, in the tree", true, hold, [](Tree& tree) { tree.held.clear(); }},
    {"let go, outside, from above", true, holdOutside,
     [](Tree& tree) {
         std::reverse(tree.held.begin(), tree.held.end());
         while (!tree.held.empty()) {
             tree.held.pop_back();
         }
         settle(tree);
     }},
    {"let go, outside, from below", true, holdOutside,
     [](Tree& tree) {
         while (!tree.held.empty()) {
             tree.held.pop_back();
             settle(tree);
         }
     }},
    {"move out of what nobody holds", true, holdOutside,
     [](Tree& tree) {
         tree.held.front().reset();
         for (std::size_t index = tree.nodes.size() - 1; index > 0; --index) {
             tree.root.appendChild(*tree.nodes[index]);
             tree.held.pop_back();
         }
     }},
    {"move to another document", true, hold,
     [](Tree& tree) { NuCreateDOMDocument(u"<o/>")->GetRootNode()->appendChild(tree.root); }},
    {"refused by one parent", false, nothing,
     [](Tree& tree) {
         const auto text = tree.document->createTextNode(u"t");
         for (TNuDOMElement* node : tree.nodes) {
             ignoringFaults([&] { node->_linkToParent(text.get(), rdpLast, nullptr); });
         }
         for (TNuDOMElement* node : tree.nodes) {
             tree.root.appendChild(*node);
         }
     }},
    {"free what lists refer to", false, nothing,
     [](Tree& tree) {
         const auto list = tree.root.CreateElementList(u"i");
         const auto other = NuCreateDOMDocument(u"<o/>");
         const auto guest = TNuDOMNodeList::Create(nullptr, other.get(), false);
         guest->Add(tree.root);
         for (TNuDOMElement* node : tree.nodes) {
             node->_delete();
         }
     }},
    {"sort", false, nothing, [](Tree& tree) { tree.root.CreateElementList(u"i")->Sort(u"."); }},
    {"write a deep tree", true, nothing,
     [](Tree& tree) { static_cast<void>(tree.document->get_xml()); }},
    {"replace the content", true, nothing, [](Tree& tree) { tree.root.set_innerxml(u"<again/>"); }},
};

// Objects

class Box : public host::Published<Box> {
public:
    std::u16string Name = u"box";
    std::vector<std::u16string> Words;
    std::unique_ptr<Box> Inner;
    static constexpr auto published = host::publish<Box>(
        u"TBox", host::prop<&Box::Name>(), host::prop<&Box::Words>(), host::prop<&Box::Inner>());
};

void readAndWrite(std::string_view head, std::string_view piece, std::string_view tail,
                  std::size_t count) {
    const std::string text =
        std::string(head) + repeated(piece, count) + "</Box>" + repeated(tail, count);
    Box box;
    ignoringFaults([&] { NuDeSerializeObject(box, NuFromUtf8(text)); });
    ignoringFaults([&] { static_cast<void>(NuSerializeObject2Xml(box)); });
    // As deep as it is: freeing it is the application's business.
    while (box.Inner) {
        box.Inner = std::move(box.Inner->Inner);
    }
}

// The measurement

/// Processor time of one run, which other programs disturb less than the clock on the wall.
double seconds(const Prepare& prepare, std::size_t count) {
    const std::function<void()> run = prepare(count);
    const std::clock_t start = std::clock();
    run();
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

/// What the names of the rows that are wanted hold.
std::string_view wanted;
int surplus = 0;

void compare(const std::string& name, std::size_t count, const Prepare& prepare) {
    if (name.find(wanted) == std::string::npos) {
        return;
    }
    // Disturbances only ever add time, so the fastest of several runs tells the most.
    constexpr double most = 8; // quadratic work gives 16
    constexpr double shortest = 0.002;
    double once = std::numeric_limits<double>::max();
    double more = once;
    for (int repetition = 0; repetition < 5 && (repetition < 1 || more > most * once);
         ++repetition) {
        once = std::min(once, seconds(prepare, count));
        more = std::min(more, seconds(prepare, 4 * count));
    }
    const double ratio = more / std::max(once, 1e-6);
    const bool isMore = ratio > most && more > shortest;
    surplus += isMore ? 1 : 0;
    std::printf("%-52s %9zu %9.2f %9.2f %7.2f%s\n", name.c_str(), count, once * 1000, more * 1000,
                ratio, isMore ? "  more than linear" : "");
    std::fflush(stdout);
}

} // namespace

/// Argument: a part of the names of the rows that are wanted, else all. Gives 1 when something was
/// more than linear.
int main(int count, char** arguments) {
    wanted = count > 1 ? arguments[1] : "";
    std::printf("%-52s %9s %9s %9s %7s\n", "", "n", "n, ms", "4n, ms", "4n / n");
    for (const Reading& reading : readings) {
        for (const Shape& shape : shapes) {
            const std::string name = std::string(reading.name) + ": " + shape.head + shape.piece;
            compare(name, 50'000, [&](std::size_t size) {
                const std::string text = shape.head + numbered(shape.piece, size) + shape.tail;
                return [&, text] { ignoringFaults([&] { reading.run(text); }); };
            });
        }
    }
    for (const Edit& edit : edits) {
        compare(edit.name, 50'000, [&](std::size_t size) {
            const auto tree = std::make_shared<Tree>(size, edit.isDeep);
            edit.prepare(*tree);
            return [&, tree] { edit.run(*tree); };
        });
    }
    const std::pair<const char*, const char*> boxes[] = {{"<Words><W>w</W></Words>", ""},
                                                         {"<Nobody/>", ""},
                                                         {"<Inner>", "</Inner>"},
                                                         {"<Name>", ""}};
    for (const auto& [piece, tail] : boxes) {
        compare(std::string("object of ") + piece, 20'000, [piece = piece, tail = tail](auto size) {
            return [=] { readAndWrite("<Box>", piece, tail, size); };
        });
    }
    return surplus == 0 ? 0 : 1;
}
