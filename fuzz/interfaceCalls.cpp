// Operations of the interfaces that applications reach through the registries, in any order with
// any arguments: nodes of several documents and of another library, handles that outlive what they
// came from, calls out of events. What the tree says of itself has to fit together after each.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "host/com/streamAdapter.h"
#include "host/dom/vendorRegistry.h"
#include "host/sax/SaxHelpers.h"
#include "nuXmlDOM.h"
#include "support/interfaceTable.h"
#include "tests/support/foreignNode.h"

using fuzz::Pool;
using host::Ref;

namespace {

/// A handler that keeps what it gets, and calls whatever comes next.
class Meddler final : public host::TBufferedDefaultHandler {
public:
    explicit Meddler(Pool& pool) : pool_(pool) {}

    void setDocumentLocator(host::ILocator& locator) override { meddle(&locator); }
    void startDocument() override { meddle(nullptr); }
    void startElement(std::u16string_view, std::u16string_view, std::u16string_view,
                      host::IBufferedAttributes& attributes) override {
        meddle(&attributes);
    }
    void endElement(std::u16string_view, std::u16string_view, std::u16string_view) override {
        meddle(nullptr);
    }
    void characters(std::u16string_view text) override {
        pool_.lastText = text;
        meddle(nullptr);
    }
    void comment(std::u16string_view text) override { characters(text); }
    void warning(host::ISAXParseError& error) override { meddle(&error); }
    void fatalError(host::ISAXParseError& error) override { meddle(&error); }

private:
    void meddle(host::IUnknown* object);

    Pool& pool_;
};

void makeDocument(Pool& pool) {
    const auto document = TNuDOMDocument::Create();
    const auto face = document.as<host::IDOMPersist>();
    bool isLoaded = false;
    host::SetErrorInfo(nullptr);
    fuzz::checkErrorInfo(face->loadxml(fuzz::pickValue<std::u16string>(pool), isLoaded));
    pool.keep(document.as<host::IDOMDocument>());
}
void makeReader(Pool& pool) {
    pool.keep(host::CreateBufferedXMLReader());
    pool.keep(Ref<host::IErrorHandler>(host::makeRef<Meddler>(pool).get()));
}
void makeOther(Pool& pool) {
    switch (pool.pick(4)) {
    case 0:
        return pool.keep(host::makeRef<support::ForeignNode>());
    case 1:
        return pool.keep(host::makeRef<host::TInputSource>());
    case 2:
        return pool.keep(host::makeStreamInterface(pool.pickStream()));
    default:
        return pool.keep(host::CreateDOMImplementation());
    }
}
void fillStream(Pool& pool) {
    using namespace std::string_view_literals;
    pool.fillStream(pool.pick({"<a/>"sv, "<a id='1'>t<b/>\xE2\x82\xAC</a>"sv, "<a>"sv, ""sv,
                               "\xFF\xFE<\0a\0/\0>\0"sv, "\xEF\xBB\xBF<\xFF>"sv}));
}
void drop(Pool& pool) { pool.drop(); }

std::vector<fuzz::Step> makeSteps() {
    std::vector<fuzz::Step> steps = {makeDocument, makeReader, makeOther, fillStream};
    steps.insert(steps.end(), 28, drop);
    fuzz::addInterfaceSteps(steps);
    return steps;
}

void step(Pool& pool) {
    static const std::vector<fuzz::Step> steps = makeSteps();
    const std::size_t choice = pool.pick(256) | pool.pick(256) << 8;
    host::SetErrorInfo(nullptr);
    steps[choice % steps.size()](pool);
    const Ref<host::IDOMNode> node(pool.find<host::IDOMNode>());
    if (node && node.as<INuDomObject>()) {
        fuzz::checkShape(node);
        host::SetErrorInfo(nullptr);
    }
}

void Meddler::meddle(host::IUnknown* object) {
    static int depth = 0;
    const Ref<host::IErrorHandler> self(this);
    if (object != nullptr && pool_.pick(2) == 0) {
        pool_.keep(object);
    }
    if (depth == 3) {
        return;
    }
    ++depth;
    for (std::size_t count = pool_.pick(4); count > 0 && pool_.hasMore(); --count) {
        step(pool_);
    }
    --depth;
    switch (pool_.pick(16)) {
    case 0:
        throw host::Exception(u"no more");
    case 1:
        throw ENuSaxHandledAbort(u"enough");
    default:
        break;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Pool pool(data, size);
    makeDocument(pool);
    makeDocument(pool);
    makeReader(pool);
    makeOther(pool);
    while (pool.hasMore()) {
        step(pool);
    }
    return 0;
}
