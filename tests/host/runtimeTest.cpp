#include <limits>
#include <stdexcept>

#include <gtest/gtest.h>

#include "host/com/boundary.h"
#include "host/com/implements.h"
#include "host/com/ref.h"
#include "host/dom/vendorRegistry.h"
#include "host/runtime/exception.h"
#include "host/runtime/format.h"
#include "host/runtime/memoryStream.h"
#include "host/runtime/unicode.h"
#include "host/sax/SaxHelpers.h"

namespace {

TEST(Exceptions, carryUtf16AndGiveUtf8) {
    const host::Exception error(u"\u20AC \U0001F600 \xD800");
    EXPECT_STREQ(error.what(), "\u20AC \U0001F600 \uFFFD");
    EXPECT_EQ(error.Message(), u"\u20AC \U0001F600 \xD800");
    try {
        host::failAssertion(u"Assertion failure", u"a\\b", 12);
    } catch (const host::EAssertionFailed& failure) {
        EXPECT_STREQ(failure.what(), "Assertion failure (a\\b, line 12)");
    }
    EXPECT_NO_THROW(host::checkListIndex(2, 3));
    for (const std::int64_t index : {std::int64_t{-1}, std::int64_t{3}}) {
        EXPECT_THROW(host::checkListIndex(index, 3), host::EListError);
    }
}

TEST(Exceptions, everyKindHasAMessage) {
    auto messageOf = [](auto thrown) {
        try {
            throw thrown;
        } catch (...) {
            return host::currentExceptionMessage();
        }
    };
    EXPECT_EQ(messageOf(host::EConvertError(u"\xD800")), u"\xD800");
    EXPECT_EQ(messageOf(std::runtime_error("\u20AC\xFF")), u"\u20AC\uFFFD");
    EXPECT_EQ(messageOf(5), u"");
}

TEST(FormatMessage, putsArgumentsInOnce) {
    using host::formatMessage;
    EXPECT_EQ(formatMessage(u"%s and %d", {u"%d%s", -5}), u"%d%s and -5");
    EXPECT_EQ(formatMessage(u"100% of %s, %x %%s", {u"a", u"b"}), u"100% of a, %x %b");
    EXPECT_EQ(formatMessage(u"%s %s %", {u"a"}), u"a %s %");
    EXPECT_EQ(formatMessage(u"%", {u"a"}), u"%");
    EXPECT_EQ(formatMessage(u"%d", {std::numeric_limits<std::int64_t>::min()}),
              u"-9223372036854775808");
}

TEST(Unicode, replacesWhatIsIllFormed) {
    const std::pair<std::string_view, std::u16string_view> table[] = {
        {"a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80", u"a\u00E9\u20AC\U0001F600"},
        {"\xC0\xAF", u"\uFFFD\uFFFD"},                     // overlong
        {"\xED\xA0\x80", u"\uFFFD\uFFFD\uFFFD"},           // surrogate
        {"\xF4\x90\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD"}, // above U+10FFFF
        {"\xE2\x82", u"\uFFFD"},                           // cut off
        {"\xF0\x9F\x41\xFF", u"\uFFFD\x41\uFFFD"},
    };
    for (const auto& [bytes, text] : table) {
        EXPECT_EQ(host::utf8ToUtf16(bytes), text);
    }
    EXPECT_EQ(host::utf16ToUtf8(table[0].second), table[0].first);
    EXPECT_EQ(host::utf16ToUtf8(u"\xDC00\xD800x"), "\uFFFD\uFFFDx");
}

/// Two interfaces, one of which extends the other's base.
class IFirst : public host::IUnknown {
public:
    using Base = host::IUnknown;
    static constexpr host::InterfaceId Id{1, 1};
};
class ISecond : public host::IUnknown {
public:
    using Base = host::IUnknown;
    static constexpr host::InterfaceId Id{2, 2};
};
class ISecondExtended : public ISecond {
public:
    using Base = ISecond;
    static constexpr host::InterfaceId Id{2, 3};
};

class Counted final : public host::Implements<IFirst, ISecondExtended> {
public:
    explicit Counted(bool& isAlive) : isAlive_(isAlive) { isAlive_ = true; }
    ~Counted() override { isAlive_ = false; }

private:
    bool& isAlive_;
};

std::int32_t countOf(Counted* object) {
    object->_AddRef();
    return object->_Release();
}

TEST(Ref, countsAndFindsInterfaces) {
    bool isAlive = false;
    host::Ref<Counted> object = host::makeRef<Counted>(isAlive);
    EXPECT_EQ(countOf(object.get()), 1);
    {
        const host::Ref<Counted> copy = object;
        host::Ref<ISecondExtended> extended = object;
        EXPECT_EQ(countOf(object.get()), 3);
        const auto second = extended.as<ISecond>(); // what an interface extends is found too
        const auto first = second.as<IFirst>();
        EXPECT_EQ(first.get(), static_cast<IFirst*>(object.get()));
        EXPECT_EQ(second.get(), static_cast<ISecond*>(object.get()));
        EXPECT_EQ(first.as<host::IUnknown>(), second.as<host::IUnknown>()); // one identity
        EXPECT_EQ(countOf(object.get()), 5);
        const host::Ref<ISecondExtended> moved = std::move(extended);
        EXPECT_EQ(countOf(object.get()), 5);
    }
    const auto& itself = object;
    object = itself; // must not let go in between
    EXPECT_EQ(countOf(object.get()), 1);

    void* found = object.get();
    EXPECT_EQ(object->QueryInterface(host::InterfaceId{9, 9}, &found), host::resultNoInterface);
    EXPECT_EQ(found, nullptr);
    EXPECT_FALSE(object.as<host::ILocator>());
    EXPECT_FALSE(host::queryInterface<IFirst>(static_cast<Counted*>(nullptr)));
    EXPECT_EQ(countOf(object.get()), 1);
    object.reset();
    EXPECT_FALSE(isAlive);
}

TEST(InputSource, keepsWhatItIsGiven) {
    host::TMemoryStream stream;
    const auto source = host::makeRef<host::TInputSource>(&stream);
    const auto shared = source.as<host::IInputSource>();
    shared->setPublicId(u"p");
    shared->setSystemId(u"s");
    shared->setEncoding(u"e");
    EXPECT_EQ(source->getPublicId() + source->getSystemId() + source->getEncoding(), u"pse");
    EXPECT_EQ(source->getByteStream(), &stream);
    shared->setByteStream(nullptr);
    EXPECT_EQ(source->getByteStream(), nullptr);
}

class Vendor final : public host::TSAXVendor {
public:
    explicit Vendor(std::u16string description) : description_(std::move(description)) {}
    [[nodiscard]] host::SAXString Description() const override { return description_; }
    host::Ref<host::IXMLReader> XMLReader() override { return {}; }
    host::Ref<host::IBufferedXMLReader> BufferedXMLReader() override { return {}; }

private:
    std::u16string description_;
};

TEST(SAXVendors, areFoundByDescription) {
    Vendor first(u"a");
    Vendor second(u"b");
    Vendor secondAgain(u"b");
    EXPECT_THROW(host::CreateBufferedXMLReader(), host::ESAXException); // no default
    for (Vendor* vendor : {&first, &second, &second, &secondAgain}) {
        host::RegisterSAXVendor(*vendor);
    }
    EXPECT_EQ(host::RegisteredSAXVendors(),
              (std::vector<host::TSAXVendor*>{&first, &second, &secondAgain}));
    EXPECT_EQ(host::FindSAXVendor(u"b"), &secondAgain);
    EXPECT_EQ(host::FindSAXVendor(u"B"), nullptr);
    EXPECT_THROW(host::CreateBufferedXMLReader(u"c"), host::ESAXException);
    EXPECT_THROW(host::CreateBufferedXMLReader(u"a"), host::ESAXException); // offers none

    // The default goes with the last vendor of its name, and with no other.
    host::SetDefaultSAXVendor(u"b");
    host::UnregisterSAXVendor(secondAgain);
    host::UnregisterSAXVendor(secondAgain);
    EXPECT_EQ(host::FindSAXVendor(u"b"), &second);
    host::UnregisterSAXVendor(first);
    EXPECT_EQ(host::DefaultSAXVendor(), u"b");
    host::UnregisterSAXVendor(second);
    EXPECT_EQ(host::DefaultSAXVendor(), u"");
    host::SetDefaultSAXVendor(u"later");
    host::RegisterSAXVendor(first);
    host::UnregisterSAXVendor(first);
    EXPECT_EQ(host::DefaultSAXVendor(), u"later");
    host::SetDefaultSAXVendor(u"");
}

class DOMImplementation final : public host::Implements<host::IDOMImplementation> {
public:
    host::ResultCode hasFeature(std::u16string_view, std::u16string_view,
                                bool& hasIt) noexcept override {
        return host::guardCall(hasIt, [] { return true; });
    }
    host::ResultCode createDocumentType(std::u16string_view, std::u16string_view,
                                        std::u16string_view,
                                        host::Ref<host::IDOMDocumentType>&) noexcept override {
        return host::resultUnexpected;
    }
    host::ResultCode createDocument(std::u16string_view, std::u16string_view,
                                    host::IDOMDocumentType*,
                                    host::Ref<host::IDOMDocument>&) noexcept override {
        return host::resultUnexpected;
    }
};

class DOMVendor final : public host::TDOMVendor {
public:
    explicit DOMVendor(std::u16string description) : description_(std::move(description)) {}
    [[nodiscard]] std::u16string Description() const override { return description_; }
    host::Ref<host::IDOMImplementation> DOMImplementation() override {
        return description_ == u"none" ? host::Ref<host::IDOMImplementation>()
                                       : host::makeRef<::DOMImplementation>();
    }

private:
    std::u16string description_;
};

TEST(DOMVendors, giveAnImplementation) {
    DOMVendor first(u"a");
    DOMVendor second(u"none");
    EXPECT_EQ(host::DefaultDOMVendor(), u"");
    EXPECT_THROW(host::CreateDOMImplementation(), host::Exception);
    host::RegisterDOMVendor(first);
    host::RegisterDOMVendor(second);
    EXPECT_EQ(host::DOMVendors().Find(u"none"), &second);
    EXPECT_EQ(host::DOMVendors().Find(u"A"), nullptr);
    EXPECT_THROW(host::CreateDOMImplementation(u"none"), host::Exception);
    EXPECT_THROW(host::CreateDOMImplementation(u"c"), host::Exception);

    // Without a name the first one is meant, until a default is set.
    bool hasFeature = false;
    host::CreateDOMImplementation()->hasFeature(u"", u"", hasFeature);
    EXPECT_TRUE(hasFeature);
    host::SetDefaultDOMVendor(u"none");
    EXPECT_THROW(host::CreateDOMImplementation(), host::Exception);
    host::UnRegisterDOMVendor(second);
    EXPECT_EQ(host::DefaultDOMVendor(), u"a");
    host::UnRegisterDOMVendor(first);
    EXPECT_TRUE(host::DOMVendors().All().empty());
}

} // namespace
