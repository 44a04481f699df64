// Every allocation fails once, one run after the other: what was asked for happens wholly or says
// why not, and nothing is lost or leaked (the sanitizer build looks for leaks).

#include <cstdlib>
#include <exception>
#include <functional>
#include <new>
#include <string>

#include <gtest/gtest.h>

#include "common/memoryStream.h"
#include "nuXmlDOM.h"

namespace {

/// Allocations until one fails; negative while all succeed.
thread_local long allocationsLeft = -1;

bool fails() noexcept { return allocationsLeft >= 0 && allocationsLeft-- == 0; }

} // namespace

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void* malloc(std::size_t size) { return fails() ? nullptr : __libc_malloc(size); }
void* realloc(void* block, std::size_t size) {
    return fails() ? nullptr : __libc_realloc(block, size);
}
}
#endif

void* operator new(std::size_t size) {
    void* block = fails() ? nullptr : std::malloc(size);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    return block;
}
[[gnu::noinline]] void operator delete(void* block) noexcept { std::free(block); }
[[gnu::noinline]] void operator delete(void* block, std::size_t /*size*/) noexcept {
    std::free(block);
}

namespace {

/// Runs `action` again and again, each time with a later allocation failing, until none fails.
/// `check` sees after each run whether it succeeded. Gives the number of runs that failed.
long failEverywhere(const std::function<void()>& prepare, const std::function<void()>& action,
                    const std::function<void(bool)>& check) {
    for (long count = 0;; ++count) {
        SCOPED_TRACE(count);
        prepare();
        bool isDone = false;
        allocationsLeft = count;
        try {
            action();
            isDone = true;
        } catch (const std::exception&) {
        }
        const bool wasReached = allocationsLeft < 0;
        allocationsLeft = -1;
        check(isDone);
        if (::testing::Test::HasFailure() || !wasReached) {
            return count;
        }
    }
}

constexpr std::u16string_view text =
    u"<?xml version=\"1.0\"?><!--c--><r xmlns:p=\"u\"><p:a k=\"a value of some length\" "
    u"l=\"&amp;\"/>"
    u"<b>a text that does not fit into its node</b><![CDATA[x]]>\u20AC<?q w?></r>";

NuXmlString written(TNuDOMDocument& document) { return document.get_xml(); }

TEST(OutOfMemory, leavesNothingBehindAFailedLoad) {
    const NuXmlString expected = written(*NuCreateDOMDocument(text));
    NuRef<TNuDOMDocument> document;
    const long count = failEverywhere([&] { document = TNuDOMDocument::Create(); },
                                      [&] { document->loadxml(text); },
                                      [&](bool isDone) {
                                          EXPECT_TRUE(isDone || written(*document) != expected);
                                          EXPECT_FALSE(document->IsLoading());
                                          document->loadxml(text);
                                          EXPECT_EQ(written(*document), expected);
                                      });
    EXPECT_GT(count, 10);
}

TEST(OutOfMemory, leavesTheTreeWholeBehindAFailedEdit) {
    using Edit = std::function<void(TNuDOMDocument&)>;
    const Edit edits[] = {
        [](auto& document) { document.GetRootNode()->setAttribute(u"new", u"value"); },
        [](auto& document) {
            document.GetRootNode()->GetChildElementEx(u"b").set_text(u"another text");
        },
        [](auto& document) { document.GetRootNode()->set_nodeName(u"another:name"); },
        [](auto& document) { document.GetRootNode()->get_firstChild()->_delete(); },
        [](auto& document) {
            const auto child = document.createElement(u"e");
            document.GetRootNode()->insertBefore(*child, document.GetRootNode()->get_firstChild());
        },
        [](auto& document) { (void)document.SelectSingleNode(u"r/new[@k='v']/deeper", soCreate); },
        [](auto& document) { document.GetRootNode()->cloneNode(true); },
    };
    long count = 0;
    for (const Edit& edit : edits) {
        SCOPED_TRACE(&edit - edits);
        NuRef<TNuDOMDocument> document;
        count +=
            failEverywhere([&] { document = NuCreateDOMDocument(text); }, [&] { edit(*document); },
                           [&](bool /*isDone*/) {
                               // Whatever of it is done, the tree is one that can be read again.
                               const NuXmlString now = written(*document);
                               EXPECT_EQ(written(*NuCreateDOMDocument(now)), now);
                               document->GetRootNode()->set_innerxml(u"<again/>");
                               EXPECT_EQ(document->GetRootNode()->get_innerxml(), u"<again/>");
                           });
    }
    EXPECT_GT(count, 10);
}

TEST(OutOfMemory, changesNothingByAFailedWrite) {
    const NuRef<TNuDOMDocument> document = NuCreateDOMDocument(text);
    const NuXmlString expected = written(*document);
    failEverywhere([] {},
                   [&] {
                       TNuMemoryStream stream;
                       document->SaveToStream(stream, true, true);
                       (void)document->get_formattedXml();
                   },
                   [&](bool /*isDone*/) { EXPECT_EQ(written(*document), expected); });
}

TEST(OutOfMemory, isAResultOfInterfaces) {
    const NuRef<TNuDOMDocument> document = NuCreateDOMDocument(text);
    const NuXmlString expected = written(*document);
    const auto face = document.as<host::IDOMNodeEx>();
    host::ResultCode code = host::resultOk;
    std::u16string xml;
    failEverywhere([&] { xml = {}; }, [&] { code = face->get_xml(xml); },
                   [&](bool isDone) {
                       EXPECT_TRUE(isDone);
                       EXPECT_EQ(code == host::resultOk, xml == expected) << code;
                       EXPECT_LE(code, host::resultOk);
                   });
}

} // namespace
