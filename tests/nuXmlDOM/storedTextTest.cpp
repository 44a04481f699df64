#include <algorithm>
#include <fstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "nuXmlDOM/core/characterData.h"
#include "nuXmlDOM/core/document.h"
#include "support/randomText.h"

namespace {

/// Kilobytes of memory that the process uses.
std::int64_t memoryInUse() {
    std::ifstream pages("/proc/self/statm");
    std::int64_t total = 0;
    std::int64_t resident = 0;
    pages >> total >> resident;
    return 4 * resident;
}

NuXmlString randomText(support::Random& random) {
    constexpr std::size_t limits[] = {2, 10, 20, 300, 600, 3000, 20000};
    const std::size_t length = random(limits[random(random(8) == 0 ? 7 : 5)]);
    const bool isWide = random(8) == 0;
    NuXmlString text(length, u'\0');
    for (NuXmlChar& unit : text) {
        unit = static_cast<NuXmlChar>(random(isWide && random(20) == 0 ? 0x10000 : 0x80));
    }
    // No comment refuses what has no dash.
    std::replace(text.begin(), text.end(), u'-', u'+');
    return text;
}

/// Texts come, grow, shrink, turn wide and go; none of them may show in another.
TEST(StoredText, keepsApartWhatManyNodesHold) {
    for (std::uint64_t seed = 0; seed < support::randomInputs(4); ++seed) {
        support::Random random(seed);
        const NuRef<TNuDOMDocument> document = TNuDOMDocument::Create();
        struct Held {
            NuRef<TNuDOMComment> node;
            NuXmlString text;
        };
        std::vector<Held> all(150);
        const auto differing = [&] {
            std::size_t count = 0;
            for (const Held& item : all) {
                count += item.node != nullptr && item.node->get_data() != item.text ? 1U : 0U;
            }
            return count;
        };
        for (int step = 1; step <= 8000; ++step) {
            Held& item = all[random(all.size())];
            const NuXmlString text = randomText(random);
            if (item.node == nullptr) {
                item = {document->createComment(text), text};
            } else if (random(10) == 0 || item.text.size() > 30000) {
                item = {};
            } else if (random(3) == 0) {
                item.node->set_data(text);
                item.text = text;
            } else {
                item.node->appendData(text);
                item.text += text;
            }
            if (step % 400 == 0) {
                ASSERT_EQ(differing(), 0U) << "seed " << seed << " step " << step;
            }
        }
    }
}

/// Memory that one text leaves is there for the next.
TEST(StoredText, usesMemoryAgain) {
    const NuRef<TNuDOMDocument> document = TNuDOMDocument::Create();
    const NuRef<TNuDOMComment> comment = document->createComment(u"");
    for (const std::size_t length : {20U, 300U, 600U, 1000U, 3000U, 8000U}) {
        const NuXmlString texts[] = {NuXmlString(length, u'x'), NuXmlString(length - 9, u'y')};
        const std::int64_t before = memoryInUse();
        for (int count = 0; count < 100000; ++count) {
            comment->set_data(texts[count % 2]);
        }
        EXPECT_LT(memoryInUse() - before, 1024) << length;
    }
}

} // namespace
