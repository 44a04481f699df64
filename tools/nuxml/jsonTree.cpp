#include "jsonTree.h"

#include <set>
#include <string>
#include <vector>

#include "common/utf8.h"
#include "jsonReader.h"
#include "xmlName.h"

namespace tool {

namespace {

constexpr std::u16string_view itemName = u"item";
constexpr std::string_view noRoot =
    "the JSON is no object with one member, the document element; --root=NAME makes one around it";

/// Builds what a reader reads below one element. Needs no stack for the depth of the JSON.
class Builder {
public:
    Builder(JsonReader& reader, TNuDOMDocument& document, TNuDOMElement& top, bool hasRoot)
        : reader_(reader), document_(document), hasRoot_(hasRoot) {
        open_.push_back({Place::Top, &top, {}});
    }

    void run() {
        for (JsonToken token = reader_.next(); token != JsonToken::End; token = reader_.next()) {
            take(token);
        }
    }

private:
    enum class Place {
        Top,     ///< the value is what the element holds
        Object,  ///< members are what the element holds
        Array,   ///< each value is an element of that name
        Ordered, ///< each value is a text, or an object with what comes next
    };

    /// What was begun, and the element that it goes into.
    struct Open {
        Place place;
        TNuDOMElement* element;
        std::u16string name; ///< of the elements of an array, or the key of the member that comes
    };

    void take(JsonToken token) {
        switch (token) {
        case JsonToken::Key:
            takeKey(reader_.text());
            break;
        case JsonToken::ObjectStart:
            beginObject();
            break;
        case JsonToken::ArrayStart:
            beginArray();
            break;
        case JsonToken::ObjectEnd:
        case JsonToken::ArrayEnd:
            open_.pop_back();
            break;
        case JsonToken::Text:
        case JsonToken::Null:
        case JsonToken::End:
            addText(token == JsonToken::Null);
        }
    }

    void takeKey(const std::u16string& key) {
        const bool hasMark = key.starts_with(u'@') || key.starts_with(u'?');
        const std::u16string_view name = std::u16string_view(key).substr(hasMark ? 1 : 0);
        if (!key.starts_with(u'#')) {
            checkName(name);
        } else if (key != u"#" && key != u"#text" && key != u"#comment") {
            reader_.fail("there is no member \"" + NuToUtf8(key) + '"');
        }
        open_.back().name = key;
    }

    /// What cannot be the value of an attribute, a text, a comment or an instruction.
    void requireElement(const Open& open) const {
        if (open.place == Place::Object &&
            (open.name.starts_with(u'@') || open.name.starts_with(u'?') ||
             open.name.starts_with(u'#'))) {
            reader_.fail("the member \"" + NuToUtf8(open.name) + "\" must be a text");
        }
    }

    void beginObject() {
        const Open& open = open_.back();
        requireElement(open);
        const bool isSame = open.place == Place::Top || open.place == Place::Ordered;
        TNuDOMElement& element = isSame ? *open.element : open.element->AddElement(open.name);
        open_.push_back({Place::Object, &element, {}});
    }

    void beginArray() {
        const Open& open = open_.back();
        if (open.place == Place::Top && !hasRoot_) {
            reader_.fail(std::string(noRoot));
        }
        if (open.place == Place::Object && open.name == u"#") {
            open_.push_back({Place::Ordered, open.element, {}});
            return;
        }
        requireElement(open);
        if (open.place == Place::Ordered) {
            reader_.fail("an array cannot stand in \"#\"");
        }
        if (open.place == Place::Object) {
            open_.push_back({Place::Array, open.element, open.name});
            return;
        }
        TNuDOMElement& element =
            open.place == Place::Top ? *open.element : open.element->AddElement(open.name);
        open_.push_back({Place::Array, &element, std::u16string(itemName)});
    }

    void addText(bool isNull) {
        const Open& open = open_.back();
        const std::u16string& text = reader_.text();
        TNuDOMElement& element = *open.element;
        if (open.place == Place::Top || open.place == Place::Ordered) {
            return appendText(element, text);
        }
        const std::u16string_view key = open.name;
        if (open.place == Place::Array || !isSpecial(key)) {
            TNuDOMElement& added = element.AddElement(key);
            return isNull ? void() : appendText(added, text);
        }
        if (key == u"#text") {
            appendText(element, text);
        } else if (key == u"#comment") {
            addComment(element, text);
        } else if (key.front() == u'@') {
            element.setAttribute(key.substr(1), text);
        } else if (key.front() == u'?') {
            addInstruction(element, key.substr(1), text);
        } else {
            reader_.fail("\"#\" must be an array");
        }
    }

    static bool isSpecial(std::u16string_view key) noexcept {
        return !key.empty() && (key.front() == u'@' || key.front() == u'#' || key.front() == u'?');
    }

    void appendText(TNuDOMElement& element, std::u16string_view text) {
        if (!text.empty()) {
            element.appendChild(*document_.createTextNode(text));
        }
    }

    void addComment(TNuDOMElement& element, std::u16string_view text) {
        if (text.find(u"--") != text.npos || text.ends_with(u'-')) {
            reader_.fail(R"(a comment cannot hold "--" or end with "-")");
        }
        element.AddComment(text);
    }

    void addInstruction(TNuDOMElement& element, std::u16string_view target,
                        std::u16string_view text) {
        if (text.find(u"?>") != text.npos) {
            reader_.fail("an instruction cannot hold \"?>\"");
        }
        element.appendChild(*document_.createProcessingInstruction(target, text));
    }

    /// Documents have few different names.
    void checkName(std::u16string_view name) {
        if (names_.find(name) == names_.end()) {
            if (!isXmlName(name)) {
                reader_.fail('"' + NuToUtf8(name) + "\" is no name of XML");
            }
            names_.emplace(name);
        }
    }

    JsonReader& reader_;
    TNuDOMDocument& document_;
    bool hasRoot_;
    std::vector<Open> open_;
    std::set<std::u16string, std::less<>> names_;
};

/// Makes the only element below `top` the document element, with what stands around it.
std::size_t unwrap(TNuDOMDocument& document, TNuDOMElement& top, const JsonReader& reader) {
    const auto elements = top.ChildElements();
    const bool isOne = !elements.empty() && ++elements.begin() == elements.end() &&
                       top.get_nodeValue().empty() && top.Attributes().empty();
    if (!isOne) {
        reader.fail(std::string(noRoot));
    }
    std::size_t count = 0;
    std::size_t beforeRoot = 0;
    while (TNuDOMNode* node = top.get_firstChild()) {
        if (node->get_nodeType() == host::ELEMENT_NODE) {
            beforeRoot = count;
            const NuRef<TNuDOMNode> root = top.removeChild(*node);
            document.set_documentElement(static_cast<TNuDOMElement&>(*root));
        } else {
            document.appendChild(*node);
            ++count;
        }
    }
    return beforeRoot;
}

} // namespace

JsonTree treeOfJson(std::string_view json, std::optional<std::u16string_view> root) {
    JsonTree tree{TNuDOMDocument::Create()};
    TNuDOMDocument& document = *tree.document;
    JsonReader reader(json);
    // An element around everything; it may stay there.
    const NuRef<TNuDOMElement> top = document.createElement(root.value_or(itemName));
    Builder(reader, document, *top, root.has_value()).run();
    if (root) {
        document.set_documentElement(*top);
    } else {
        tree.beforeRoot = unwrap(document, *top, reader);
    }
    // The declaration comes first.
    const bool isFirst = document.GetProcessingInstruction(u"xml").empty();
    document.SetEncoding(u"UTF-8");
    tree.beforeRoot += isFirst ? 1 : 0;
    return tree;
}

} // namespace tool
