// Edits of two documents, driven by bytes and held against a plain model of the trees.

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "nuXmlDOM.h"
#include "nuXmlParser/escape.h"
#include "nuXmlParser/unescape.h"

namespace {

using String = std::u16string;
using View = std::u16string_view;

void require(bool isTrue, int line = __builtin_LINE()) {
    if (!isTrue) {
        std::fprintf(stderr, "treeEdits.cpp:%d does not hold\n", line);
        std::abort();
    }
}

/// A node as it ought to be.
struct Model {
    TNuDOMNode* node;
    host::DOMNodeType type;
    std::size_t document;
    std::optional<String> prefix;
    String local;
    String stored;
    Model* parent = nullptr;
    std::vector<Model*> attributes;
    std::vector<Model*> children;
    /// The child elements in the order of their list.
    std::vector<Model*> elements;
    std::vector<NuRef<TNuDOMNode>> handles;
    std::array<NuRef<TNuDOMNodeList>, 3> lists;
    bool isListed = false;
    /// Its parent has refused it while nobody held it. It may be used again, so it stays although
    /// nobody holds it; the model does not follow it then.
    bool isLost = false;

    bool is(host::DOMNodeType other) const { return type == other; }
    bool isNamed(View other) const {
        const std::size_t before = prefix ? prefix->size() + 1 : 0;
        return other.size() == before + local.size() && other.substr(before) == local &&
               (!prefix || (other[before - 1] == u':' && other.substr(0, before - 1) == *prefix));
    }
    String name() const { return prefix ? *prefix + u":" + local : local; }
    Model* root() const { return elements.empty() ? nullptr : elements.front(); }
    bool isHeld() const {
        return !handles.empty() ||
               std::any_of(lists.begin(), lists.end(), [](const auto& list) { return !!list; });
    }
    std::vector<Model*>& chainOf(const Model& child) {
        return child.is(host::ATTRIBUTE_NODE) ? attributes : children;
    }
};

/// A list that stands for itself, with nodes of both documents.
struct Snapshot {
    NuRef<TNuDOMNodeList> list;
    const Model* start;
    std::vector<const Model*> members;
    std::size_t document;
};

using Nodes = std::vector<Model*>;

/// Stands for what goes, or does not, with a lost node.
const Model lost{};

template <class List> std::ptrdiff_t indexIn(const List& nodes, const Model* node) {
    const auto place = std::find(nodes.begin(), nodes.end(), node);
    return place != nodes.end() ? place - nodes.begin() : -1;
}

void removeFrom(Nodes& nodes, const Model* node) {
    nodes.erase(std::remove(nodes.begin(), nodes.end(), node), nodes.end());
}

bool isInside(const Model* node, const Model& other) {
    while (node != nullptr && node != &other) {
        node = node->parent;
    }
    return node != nullptr;
}

void write(const Model& node, String& xml) {
    switch (node.type) {
    case host::ATTRIBUTE_NODE:
        xml += u" " + node.name() + u"=\"" + node.stored + u"\"";
        return;
    case host::TEXT_NODE:
        xml += node.stored;
        return;
    case host::CDATA_SECTION_NODE:
        xml += u"<![CDATA[" + node.stored + u"]]>";
        return;
    case host::COMMENT_NODE:
        xml += u"<!--" + node.stored + u"-->";
        return;
    case host::PROCESSING_INSTRUCTION_NODE:
        xml += u"<?" + node.name() + u" " + node.stored + u"?>";
        return;
    default:
        break;
    }
    const bool isElement = node.is(host::ELEMENT_NODE);
    if (isElement) {
        xml += u"<" + node.name();
        for (const Model* attribute : node.attributes) {
            write(*attribute, xml);
        }
        xml += node.children.empty() ? u"/>" : u">";
    }
    for (const Model* child : node.children) {
        write(*child, xml);
    }
    if (isElement && !node.children.empty()) {
        xml += u"</" + node.name() + u">";
    } else if (!isElement && node.root() != nullptr) {
        write(*node.root(), xml);
    }
}

class Edits {
public:
    Edits(const std::uint8_t* data, std::size_t size) : data_(data), end_(data + size) {
        for (std::size_t index = 0; index < 2; ++index) {
            startDocument(index);
        }
    }

    void run() {
        // All is looked at now and then only, at other steps with each length of the data: what is
        // wrong mostly stays wrong.
        std::size_t untilCheck = static_cast<std::size_t>(end_ - data_) % stepsPerCheck;
        while (data_ != end_) {
            touched_.clear();
            step();
            settle();
            checkTouched();
            if (untilCheck-- == 0) {
                untilCheck = stepsPerCheck;
                check();
            }
        }
        check();
    }

private:
    static constexpr std::size_t mostNodes = 80;
    static constexpr std::size_t stepsPerCheck = 16;

    std::size_t pick(std::size_t count) { return data_ != end_ ? *data_++ % count : 0; }
    template <std::size_t count> View pick(const View (&texts)[count]) {
        return texts[pick(count)];
    }
    Model& pickNode() {
        touched_.push_back(nodes_[pick(nodes_.size())].get());
        return *touched_.back();
    }
    /// An element, or null when it is a bad day for that.
    Model* pickElement() {
        Model& node = pickNode();
        return node.is(host::ELEMENT_NODE) ? &node : nullptr;
    }
    View pickName() { return pick({u"a", u"b", u"p:a", u"k", u"xmlns", u"xmlns:p"}); }
    View pickValue() {
        return pick({u"", u"x", u"a&b\"'<", u"12345678", u"123456789", u"\u20ACuro"});
    }

    // The model

    Model& add(TNuDOMNode& node, std::size_t document) {
        nodes_.push_back(std::make_unique<Model>());
        Model& model = *nodes_.back();
        model.node = &node;
        model.type = node.get_nodeType();
        model.document = document;
        rename(model, node.get_nodeName());
        if (model.type != host::DOCUMENT_NODE && model.type != host::ELEMENT_NODE) {
            restore(model, node.get_nodeValue());
        }
        return model;
    }
    static void rename(Model& model, View name) {
        const std::size_t colon = name.find(u':');
        model.prefix =
            colon != name.npos ? std::optional<String>(name.substr(0, colon)) : std::nullopt;
        model.local = name.substr(colon + 1);
    }
    static void restore(Model& model, View value) {
        const bool isEscaped = model.is(host::TEXT_NODE) || model.is(host::ATTRIBUTE_NODE);
        model.stored = isEscaped ? NuStrToXML(value) : String(value);
    }
    /// Takes over what stands below a node that was just read.
    void addBelow(Model& model) {
        auto& element = static_cast<TNuDOMElement&>(*model.node);
        for (TNuDOMNode& child : element.ChildNodes()) {
            Model& below = add(child, model.document);
            place(below, model, rdpLast, nullptr);
            if (below.is(host::ELEMENT_NODE)) {
                for (auto& attribute : static_cast<TNuDOMElement&>(child).Attributes()) {
                    place(add(attribute, model.document), below, rdpLast, nullptr);
                }
                addBelow(below);
            }
        }
    }
    void startDocument(std::size_t index) {
        NuRef<TNuDOMDocument> document = TNuDOMDocument::Create();
        documents_[index] = &add(*document, index);
        documents_[index]->handles.emplace_back(document);
    }
    void leave(Model& node) {
        if (Model* parent = std::exchange(node.parent, nullptr)) {
            removeFrom(parent->chainOf(node), &node);
            removeFrom(parent->elements, &node);
        }
    }
    /// Whether a node of this kind may stand below `parent` as that is now.
    static bool canHold(const Model& parent, const Model& node) {
        if (!parent.is(host::DOCUMENT_NODE)) {
            return parent.is(host::ELEMENT_NODE) && !node.is(host::DOCUMENT_NODE);
        }
        return node.is(host::ELEMENT_NODE)
                   ? parent.root() == nullptr
                   : node.is(host::COMMENT_NODE) || node.is(host::PROCESSING_INSTRUCTION_NODE);
    }
    /// Puts a node that has no place below `parent`; false when it cannot stand there.
    static bool place(Model& node, Model& parent, TNuDOMPosition position, const Model* reference) {
        const bool isElement = node.is(host::ELEMENT_NODE);
        const bool isDocument = parent.is(host::DOCUMENT_NODE);
        if (!canHold(parent, node)) {
            return false;
        }
        if (isDocument && isElement) {
            parent.elements.push_back(&node);
            node.parent = &parent;
            return true;
        }
        const bool isRelative = position == rdpBefore || position == rdpAfter;
        if (isRelative && reference == nullptr) {
            return false;
        }
        Nodes& chain = parent.chainOf(node);
        const auto indexFor = [&](const Nodes& nodes) {
            const auto size = static_cast<std::ptrdiff_t>(nodes.size());
            if (position == rdpFirst || position == rdpLast) {
                return position == rdpFirst ? 0 : size;
            }
            if (isDocument && reference == parent.root()) {
                return size;
            }
            return indexIn(nodes, reference) + (position == rdpAfter ? 1 : 0);
        };
        const std::ptrdiff_t index = indexFor(chain);
        const std::ptrdiff_t elementIndex = isElement ? indexFor(parent.elements) : 0;
        if (index < 0 || elementIndex < 0) {
            return false;
        }
        chain.insert(chain.begin() + index, &node);
        if (isElement) {
            parent.elements.insert(parent.elements.begin() + elementIndex, &node);
        }
        node.parent = &parent;
        return true;
    }
    template <class Visit> static void forEachBelow(Model& node, Visit&& visit) {
        visit(node);
        const Nodes& below = node.is(host::DOCUMENT_NODE) ? node.elements : node.attributes;
        for (Model* other : below) {
            forEachBelow(*other, visit);
        }
        for (Model* other : node.children) {
            forEachBelow(*other, visit);
        }
    }
    void forgetInSnapshots(const Model& node, const Model* instead) {
        for (Snapshot& snapshot : snapshots_) {
            snapshot.start = snapshot.start == &node ? instead : snapshot.start;
            std::replace(snapshot.members.begin(), snapshot.members.end(), &node, instead);
        }
    }
    static void moveTo(Model& root, std::size_t document) {
        forEachBelow(root, [&](Model& node) { node.document = document; });
    }
    void drop(Model& root) {
        Nodes dropped;
        const Model* instead = root.isLost ? &lost : nullptr;
        forEachBelow(root, [&](Model& node) {
            forgetInSnapshots(node, instead);
            dropped.push_back(&node);
        });
        const auto isDropped = [&](const auto& node) { return indexIn(dropped, node.get()) >= 0; };
        nodes_.erase(std::remove_if(nodes_.begin(), nodes_.end(), isDropped), nodes_.end());
    }
    static bool isHeldBelow(Model& root) {
        bool isHeld = false;
        forEachBelow(root, [&](const Model& node) { isHeld = isHeld || node.isHeld(); });
        return isHeld;
    }
    /// Forgets what nobody holds any more.
    void settle() {
        roots_.clear();
        for (const auto& node : nodes_) {
            if (node->parent == nullptr && !node->is(host::DOCUMENT_NODE)) {
                roots_.push_back(node.get());
            }
        }
        for (Model* root : roots_) {
            if (!isHeldBelow(*root)) {
                drop(*root);
            }
        }
        for (std::size_t index = 0; index < documents_.size(); ++index) {
            const auto isHeld = [index](const auto& node) {
                return node->document == index && node->isHeld();
            };
            const auto isOfSnapshot = [index](const Snapshot& snapshot) {
                return snapshot.document == index;
            };
            if (std::none_of(nodes_.begin(), nodes_.end(), isHeld) &&
                std::none_of(snapshots_.begin(), snapshots_.end(), isOfSnapshot)) {
                drop(*documents_[index]);
                startDocument(index);
            }
        }
    }

    // The edits

    void step() {
        switch (pick(16)) {
        case 0:
        case 1:
            return create();
        case 2:
        case 3:
        case 4:
        case 5:
            return link();
        case 6:
            return remove(pickNode());
        case 7: {
            Model& node = pickNode();
            node.isLost = false;
            return node.handles.emplace_back(node.node), void();
        }
        case 8:
        case 9: {
            Model& node = pickNode();
            return node.handles.empty() ? void() : node.handles.pop_back();
        }
        case 10:
            return change(pickNode());
        case 11:
            return read();
        case 12:
            return holdList();
        case 13:
            return snapshot();
        case 14:
            return attributes();
        default:
            return inspect();
        }
    }
    void create() {
        if (nodes_.size() >= mostNodes) {
            return;
        }
        const std::size_t index = pick(2);
        auto& document = static_cast<TNuDOMDocument&>(*documents_[index]->node);
        NuRef<TNuDOMNode> made;
        switch (pick(8)) {
        case 0:
            made = document.createAttribute(pickName());
            break;
        case 1:
            made = document.createTextNode(pickValue());
            break;
        case 2:
            made = document.createCDATASection(pickValue());
            break;
        case 3:
            made = document.createComment(pickValue());
            break;
        case 4:
            made = document.createProcessingInstruction(pickName(), pickValue());
            break;
        default:
            made = document.createElement(pickName());
        }
        add(*made, index).handles.push_back(made);
    }
    void link() {
        Model& node = pickNode();
        Model& chosen = pickNode();
        const std::size_t form = pick(64);
        const auto position = static_cast<TNuDOMPosition>(form % 4);
        // Now and then any nodes, which is mostly refused: that is slow and tells little.
        if (form < 4) {
            return link(node, chosen, position, pick(4) != 0 ? &pickNode() : nullptr);
        }
        if (Model* parent = parentFor(node, chosen)) {
            const bool isElement = node.is(host::ELEMENT_NODE);
            const Nodes& others = isElement ? parent->elements : parent->chainOf(node);
            Model* reference = others.empty() ? nullptr : others[pick(others.size())];
            const bool isAlone = reference == nullptr || reference == &node;
            link(node, *parent, isAlone ? rdpLast : position, reference);
        }
    }
    void link(Model& node, Model& parent, TNuDOMPosition position, const Model* reference) {
        // 1. What is wrong in itself changes nothing.
        bool isDone = false;
        if (!node.is(host::DOCUMENT_NODE) && !isInside(&parent, node)) {
            leave(node);
            moveTo(node, parent.document);
            isDone = place(node, parent, position, reference);
        }
        // 2. The same in the document.
        bool isRefused = false;
        try {
            node.node->_linkToParent(parent.node, position,
                                     reference != nullptr ? reference->node : nullptr);
        } catch (const host::Exception&) {
            isRefused = true;
        }
        require(isDone != isRefused);
        node.isLost = node.parent == nullptr && !node.isHeld();
    }
    /// Where `node` can stand: `chosen`, or what is nearest above it.
    static Model* parentFor(const Model& node, Model& chosen) {
        for (Model* parent = &chosen; parent != nullptr; parent = parent->parent) {
            const bool isOccupied = !canHold(*parent, node) && parent->root() != nullptr;
            Model* free = parent->is(host::DOCUMENT_NODE) && isOccupied ? parent->root() : parent;
            if (canHold(*free, node) && !isInside(free, node)) {
                return free;
            }
        }
        return nullptr;
    }
    void remove(Model& node) {
        if (node.is(host::DOCUMENT_NODE)) {
            return;
        }
        leave(node);
        node.isLost = false;
        if (pick(2) == 0) {
            NuRef<TNuDOMNode> taken(node.node);
            node.node->_linkToParent(nullptr, rdpLast, nullptr);
        } else {
            node.node->_delete();
        }
    }
    void change(Model& node) {
        if (node.is(host::DOCUMENT_NODE)) {
            return;
        }
        const bool isNamed = node.is(host::ELEMENT_NODE) || node.is(host::ATTRIBUTE_NODE);
        if (isNamed && pick(2) == 0) {
            const View prefix = pick({u"", u"p", u"q", u"xmlns"});
            node.prefix = prefix.empty() ? std::nullopt : std::optional<String>(prefix);
            node.node->set_prefix(prefix);
            return;
        }
        const View value = pickValue();
        if (node.is(host::ELEMENT_NODE)) {
            setText(node, value);
        } else {
            restore(node, value);
        }
        if (!node.is(host::ELEMENT_NODE)) {
            node.node->set_nodeValue(value);
        }
    }
    void setText(Model& element, View value) {
        Model* kept = nullptr;
        for (Model* child : Nodes(element.children)) {
            const bool isText = child->is(host::TEXT_NODE);
            if (isText && kept == nullptr && !value.empty()) {
                kept = child;
                restore(*kept, value);
            } else if (isText || child->is(host::CDATA_SECTION_NODE)) {
                leave(*child);
            }
        }
        const NuRef<TNuDOMNode> held(element.node); // as in read
        element.node->set_nodeValue(value);
        if (kept == nullptr && !value.empty()) {
            place(add(*element.node->LastChild(), element.document), element, rdpLast, nullptr);
        }
    }
    void read() {
        static constexpr struct {
            const char16_t* xml;
            const char16_t* written;
        } texts[] = {
            {u"", u""},
            {u"t", u"t"},
            {u"t<b/>u&amp;", u"t<b/>u&amp;"},
            {u"<b k=\"1\" j=\"2\" k=\"3\"/><!--c-->", u"<b k=\"3\" j=\"2\"/><!--c-->"},
            {u"<p:a xmlns:p=\"u\">x<![CDATA[y]]><c/></p:a>", nullptr},
        };
        Model* element = pickElement();
        const auto& text = texts[pick(std::size(texts))];
        if (element == nullptr || nodes_.size() >= mostNodes) {
            return;
        }
        for (Model* child : Nodes(element->children)) {
            leave(*child);
        }
        const NuRef<TNuDOMNode> held(element->node); // its last held child may just leave it
        element->node->set_innerxml(text.xml);
        addBelow(*element);
        String below;
        for (const Model* child : element->children) {
            write(*child, below);
        }
        require(below == (text.written != nullptr ? text.written : text.xml));
    }
    void holdList() {
        Model* element = pickElement();
        const std::size_t kind = pick(3);
        if (element == nullptr) {
            return;
        }
        auto& node = static_cast<TNuDOMElement&>(*element->node);
        element->isListed = true;
        TNuDOMNodeList* list = &node.get_childNodes();
        list = kind == 1 ? &node.get_childElements() : list;
        list = kind == 2 ? &node.get_attributes() : list;
        if (element->lists[kind]) {
            element->lists[kind].reset();
        } else {
            element->lists[kind] = NuRef<TNuDOMNodeList>(list);
            element->isLost = false;
        }
    }
    void snapshot() {
        if (snapshots_.size() > 3) {
            snapshots_.erase(snapshots_.begin());
            return;
        }
        const Model& start = pickNode();
        const std::size_t owner = pick(8) == 0 ? 1 - start.document : start.document;
        auto& document = static_cast<TNuDOMDocument&>(*documents_[owner]->node);
        Snapshot made{TNuDOMNodeList::Create(start.node, &document, false), &start, {}, owner};
        for (std::size_t count = pick(8); count > 0; --count) {
            Model& node = pickNode();
            const auto size = static_cast<std::ptrdiff_t>(made.members.size());
            const std::ptrdiff_t known = indexIn(made.members, &node);
            if (pick(2) == 0) {
                require(made.list->Add(*node.node) == (known < 0 ? size : known));
                made.members.insert(made.members.end(), known < 0 ? 1 : 0, &node);
            } else {
                require(made.list->Insert(0, *node.node) == (known < 0 ? 0 : known));
                made.members.insert(made.members.begin(), known < 0 ? 1 : 0, &node);
            }
        }
        snapshots_.push_back(std::move(made));
    }
    /// Many attributes at once, so that they are found in another way than a few.
    void attributes() {
        Model* element = pickElement();
        const std::size_t first = pick(8);
        if (element == nullptr || nodes_.size() >= mostNodes) {
            return;
        }
        auto& node = static_cast<TNuDOMElement&>(*element->node);
        for (std::size_t number = first; number < first + 20; ++number) {
            const String name = {number % 2 == 0 ? u'k' : u'j',
                                 static_cast<char16_t>(u'a' + number)};
            Model* known = attributeOf(*element, name);
            node.setAttribute(name, name);
            if (known == nullptr) {
                known = &add(*node.getAttributeNode(name), element->document);
                require(place(*known, *element, rdpLast, nullptr));
            }
            restore(*known, name);
        }
    }
    static Model* attributeOf(const Model& element, View name) {
        for (Model* attribute : element.attributes) {
            if (attribute->isNamed(name)) {
                return attribute;
            }
        }
        return nullptr;
    }
    static String namespaceOf(const Model& node) {
        const String key = node.prefix ? u"xmlns:" + *node.prefix : String(u"xmlns");
        const Model* scope = node.is(host::ATTRIBUTE_NODE) ? node.parent : &node;
        for (; scope != nullptr; scope = scope->parent) {
            if (const Model* found = attributeOf(*scope, key)) {
                return NuXMLToStr(found->stored);
            }
        }
        return {};
    }
    void inspect() {
        Model* model = pickElement();
        const View name = pickName();
        if (model == nullptr) {
            return;
        }
        auto& element = static_cast<TNuDOMElement&>(*model->node);
        // 1. Attributes and child elements by name.
        const Model* attribute = attributeOf(*model, name);
        require(element.getAttributeNode(name) ==
                (attribute != nullptr ? attribute->node : nullptr));
        const TNuDOMNode* child = nullptr;
        for (const Model* other : model->elements) {
            child = child == nullptr && other->isNamed(name) ? other->node : child;
        }
        require(element.GetChildElement(name) == child);
        // 2. By namespace and local name.
        const String uri = namespaceOf(*model);
        require(element.get_namespaceURI() == uri);
        const TNuDOMNode* found = nullptr;
        for (const Model* other : model->attributes) {
            const bool isDeclaration =
                other->prefix ? *other->prefix == u"xmlns" : other->local == u"xmlns";
            const String local = isDeclaration && !other->prefix ? String() : other->local;
            const bool isEqual =
                local == u"k" && (isDeclaration ? u"" : namespaceOf(*other)) == uri;
            found = found == nullptr && isEqual ? other->node : found;
        }
        require(element.getAttributeNodeNS(uri, u"k") == found);
        // 3. Its place.
        const Model* parent = model->parent;
        const bool isInElement = parent != nullptr && parent->is(host::ELEMENT_NODE);
        require(element.get_index() == (isInElement ? indexIn(parent->elements, model) : 0));
    }

    // What must hold

    /// What a step was about, unless it has gone.
    void checkTouched() {
        for (const auto& node : nodes_) {
            if (indexIn(touched_, node.get()) >= 0) {
                checkNode(*node);
            }
        }
    }
    /// Everything.
    void check() {
        for (const auto& node : nodes_) {
            checkNode(*node);
            if (node->parent == nullptr) {
                String expected;
                write(*node, expected);
                require(node->node->get_xml() == expected);
            }
        }
        for (const Snapshot& snapshot : snapshots_) {
            require(snapshot.list->Count() == snapshot.members.size());
            checkEntry(snapshot.start, snapshot.list->Node());
            for (std::size_t index = 0; index < snapshot.members.size(); ++index) {
                checkEntry(snapshot.members[index],
                           snapshot.list->GetItem(static_cast<std::ptrdiff_t>(index)));
            }
        }
    }
    /// A node that has gone reads as null, any other as itself.
    static void checkEntry(const Model* expected, const TNuDOMNode* entry) {
        require(expected == &lost || entry == (expected != nullptr ? expected->node : nullptr));
    }
    void checkNode(const Model& model) {
        require(model.node->OwnerDocument() == documents_[model.document]->node);
        require(model.node->RefCount() == static_cast<std::int32_t>(model.handles.size()));
        if (model.parent != nullptr) {
            require(model.node->get_parentNode() == model.parent->node);
        }
        if (model.isListed) {
            auto& element = static_cast<TNuDOMElement&>(*model.node);
            checkList(element.get_childNodes(), model.children);
            checkList(element.get_childElements(), model.elements);
            checkList(element.get_attributes(), model.attributes);
        }
    }
    static void checkList(const TNuDOMNodeList& list, const Nodes& nodes) {
        require(list.Count() == nodes.size());
        for (std::size_t index = 0; index < nodes.size(); ++index) {
            const auto position = static_cast<std::ptrdiff_t>(index);
            require(list.GetItem(position) == nodes[index]->node);
            require(list.IndexOf(*nodes[index]->node) == position);
        }
    }

    const std::uint8_t* data_;
    const std::uint8_t* end_;
    std::vector<std::unique_ptr<Model>> nodes_;
    std::array<Model*, 2> documents_{};
    std::vector<Snapshot> snapshots_;
    /// What the last step has chosen; pointers to compare only.
    Nodes touched_;
    Nodes roots_;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Edits(data, size).run();
    return 0;
}
