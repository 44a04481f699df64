#include <dlfcn.h>
#include <gtest/gtest.h>

#include "host/dom/vendorRegistry.h"
#include "host/runtime/classRegistry.h"
#include "host/runtime/persistent.h"
#include "host/sax/SaxHelpers.h"
#include "nuObj2Xml/serializerClass.h"

#ifdef NUXML_LIBRARY

namespace {

struct CountElements final : host::TBufferedDefaultHandler {
    int count = 0;

    void startElement(std::u16string_view, std::u16string_view, std::u16string_view,
                      host::IBufferedAttributes&) override {
        ++count;
    }
};

/// This program knows the host's registries only; the library brings its vendors and takes them
/// along.
TEST(Package, bringsAndTakesItsVendors) {
    for (int round = 0; round < 2; ++round) {
        ASSERT_EQ(dlopen(NUXML_LIBRARY, RTLD_LAZY | RTLD_NOLOAD), nullptr);
        EXPECT_EQ(host::DefaultSAXVendor(), u"");
        EXPECT_THROW(host::CreateBufferedXMLReader(), host::ESAXException);

        void* const library = dlopen(NUXML_LIBRARY, RTLD_NOW | RTLD_LOCAL);
        ASSERT_NE(library, nullptr) << dlerror();
        EXPECT_EQ(host::DefaultSAXVendor(), u"Keldon");
        host::TSAXVendor* const vendor = host::FindSAXVendor(u"Keldon");
        ASSERT_NE(vendor, nullptr);
        EXPECT_EQ(vendor->Description(), u"Keldon");
        EXPECT_FALSE(vendor->XMLReader());
        {
            const auto reader = host::CreateBufferedXMLReader();
            const auto handler = host::makeRef<CountElements>();
            reader->setContentHandler(host::Ref<host::IBufferedContentHandler>(handler.get()));
            reader->Parse(u"<a><b/></a>");
            EXPECT_EQ(handler->count, 2);
            // Exceptions are known on both sides of the border.
            EXPECT_THROW(reader->setDTDHandler(nullptr), host::ESAXNotSupportedException);

            host::Ref<host::IDOMDocument> document;
            EXPECT_EQ(host::CreateDOMImplementation()->createDocument(u"", u"a", nullptr, document),
                      host::resultOk);
            EXPECT_TRUE(document);
        }

        ASSERT_EQ(dlclose(library), 0);
        EXPECT_EQ(dlopen(NUXML_LIBRARY, RTLD_LAZY | RTLD_NOLOAD), nullptr) << "still loaded";
        EXPECT_EQ(host::FindSAXVendor(u"Keldon"), nullptr);
        EXPECT_TRUE(host::RegisteredSAXVendors().empty());
        EXPECT_TRUE(host::DOMVendors().All().empty());
    }
}

/// Classes that were registered for writing can be found while the library is there.
TEST(Package, takesItsRegistrationsOfClassesAlong) {
    static constexpr TNuSerializerClass unused{};
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(host::FindClass(u"TPersistent"), nullptr);
        void* const library = dlopen(NUXML_LIBRARY, RTLD_NOW | RTLD_LOCAL);
        ASSERT_NE(library, nullptr) << dlerror();
        const auto enter =
            reinterpret_cast<void (*)(const host::TClassInfo&, const TNuSerializerClass&)>(dlsym(
                library,
                "_Z28NuRegisterSerializationClassRKN4host10TClassInfoERK18TNuSerializerClass"));
        ASSERT_NE(enter, nullptr);
        enter(host::classOf<host::TPersistent>, unused);
        EXPECT_NE(host::FindClass(u"TPersistent"), nullptr);
        ASSERT_EQ(dlclose(library), 0);
        EXPECT_EQ(dlopen(NUXML_LIBRARY, RTLD_LAZY | RTLD_NOLOAD), nullptr) << "still loaded";
    }
    EXPECT_EQ(host::FindClass(u"TPersistent"), nullptr);
}

TEST(Package, leavesATreeOfItsDescriptionAlone) {
    struct Namesake final : host::TDOMVendor {
        [[nodiscard]] std::u16string Description() const override { return u"Keldon"; }
        host::Ref<host::IDOMImplementation> DOMImplementation() override { return {}; }
    } namesake;
    host::RegisterDOMVendor(namesake);
    const std::vector<host::TDOMVendor*> onlyThat = {&namesake};
    void* const library = dlopen(NUXML_LIBRARY, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(library, nullptr) << dlerror();
    EXPECT_EQ(host::DOMVendors().All(), onlyThat);
    ASSERT_EQ(dlclose(library), 0);
    EXPECT_EQ(host::DOMVendors().All(), onlyThat);
    host::UnRegisterDOMVendor(namesake);
}

} // namespace

#endif
