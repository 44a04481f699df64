#include "common/codePage.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdlib>
#include <string_view>

#include "common/codePageTables.h"
#include "common/simd/block.h"
#include "common/utf8.h"
#include "host/runtime/digits.h"
#include "host/runtime/exception.h"
#include "host/runtime/format.h"
#include "host/runtime/utf8Sequence.h"

namespace {

using nu::CodePage;

constexpr std::uint32_t codePageWindows1252 = 1252;

// The bytes of a code page by their characters: a hash table of a quarter's load, searched from
// the place of a character until a place is empty (0).
class NarrowingTable {
public:
    constexpr NarrowingTable() = default;
    consteval explicit NarrowingTable(const CodePage& page) {
        for (unsigned byte = 0x80; byte < 0x100; ++byte) {
            const char16_t unit = page.upper[byte - 0x80];
            if (unit == host::replacementCharacter) {
                continue;
            }
            std::size_t place = placeOf(unit);
            while (bytes_[place] != 0) {
                place = (place + 1) % placeCount;
            }
            bytes_[place] = static_cast<std::uint8_t>(byte);
        }
    }

    // The byte of a unit that is not ASCII, 0 when there is none.
    [[nodiscard]] std::uint8_t find(const CodePage& page, char16_t unit) const noexcept {
        std::size_t place = placeOf(unit);
        while (bytes_[place] != 0 && page.upper[bytes_[place] - 0x80u] != unit) {
            place = (place + 1) % placeCount;
        }
        return bytes_[place];
    }

private:
    static constexpr std::size_t placeCount = 512;

    // The upper nine bits of the lower half of a product with 65536 times the golden ratio.
    static constexpr std::size_t placeOf(char16_t unit) noexcept {
        return static_cast<std::uint16_t>(unit * 40503u) >> 7;
    }

    std::array<std::uint8_t, placeCount> bytes_{};
};

consteval auto makeNarrowingTables() {
    std::array<NarrowingTable, nu::codePages.size()> tables{};
    for (std::size_t index = 0; index < tables.size(); ++index) {
        tables[index] = NarrowingTable(nu::codePages[index]);
    }
    return tables;
}

constexpr std::array narrowingTables = makeNarrowingTables();

const CodePage* findSingleBytePage(std::uint32_t number) noexcept {
    const auto* const found = std::lower_bound(
        nu::codePages.begin(), nu::codePages.end(), number,
        [](const CodePage& page, std::uint32_t wanted) { return page.number < wanted; });
    return found != nu::codePages.end() && found->number == number ? found : nullptr;
}

const CodePage& singleBytePage(std::uint32_t number) {
    const CodePage* const page = findSingleBytePage(number);
    if (page == nullptr) {
        throw host::EConvertError(host::formatMessage(u"Unknown code page %d", {number}));
    }
    return *page;
}

// Letters in lower case and digits only: the same character set is written in many ways.
std::string foldedCharacterSet(std::string_view name) {
    std::string folded;
    for (const char letter : name) {
        if (letter >= 'A' && letter <= 'Z') {
            folded += static_cast<char>(letter + 0x20);
        } else if ((letter >= 'a' && letter <= 'z') || (letter >= '0' && letter <= '9')) {
            folded += letter;
        }
    }
    return folded;
}

// The number that a character set has as a code page, by its number or by a name of its own; 0 for
// others. Not each number is a page that is known.
std::uint32_t numberOfCharacterSet(std::string_view characterSet) {
    struct Family {
        std::string_view name;
        std::uint32_t base;
        bool numbered;
    };
    static constexpr Family families[] = {
        {"iso8859", 28590, true}, {"cp", 0, true},
        {"windows", 0, true},     {"ibm", 0, true},
        {"koi8r", 20866, false},  {"koi8u", 21866, false},
        {"tis620", 874, false},   {"usascii", 20127, false},
        {"ascii", 20127, false},  {"utf8", cNuCodePageUtf8, false},
        {"latin1", 28591, false}, {"latin2", 28592, false},
        {"latin3", 28593, false}, {"latin4", 28594, false},
        {"latin5", 28599, false}, {"latin6", 28600, false},
        {"latin7", 28603, false}, {"latin8", 28604, false},
        {"latin9", 28605, false}, {"latin10", 28606, false},
    };
    const std::string folded = foldedCharacterSet(characterSet);
    for (const Family& family : families) {
        if (!folded.starts_with(family.name)) {
            continue;
        }
        const std::string_view digits = std::string_view(folded).substr(family.name.size());
        if (!family.numbered && digits.empty()) {
            return family.base;
        }
        const auto number = host::parseDigits<std::uint32_t>(digits);
        if (family.numbered && number) {
            return family.base + *number;
        }
    }
    return 0;
}

std::uint32_t codePageOfEnvironment() {
    for (const char* const variable : {"LC_ALL", "LC_CTYPE", "LANG"}) {
        const char* const value = std::getenv(variable);
        if (value == nullptr || *value == '\0') {
            continue;
        }
        // language_territory.characterSet@modifier
        std::string_view locale(value);
        locale = locale.substr(0, locale.find('@'));
        const std::size_t point = locale.find('.');
        if (point == std::string_view::npos) {
            return cNuCodePageUtf8;
        }
        const std::uint32_t number = NuFindCodePage(locale.substr(point + 1));
        return number != 0 ? number : cNuCodePageUtf8;
    }
    return cNuCodePageUtf8;
}

std::atomic<std::uint32_t>& systemCodePage() {
    static std::atomic<std::uint32_t> number{codePageOfEnvironment()};
    return number;
}

// Takes the setting when the library is loaded, before threads could change the environment.
[[maybe_unused]] const std::atomic<std::uint32_t>& takenAtLoad = systemCodePage();

void widenSingleBytes(const CodePage& page, std::string_view text, char16_t* units) noexcept {
    constexpr std::size_t blockSize = nu::simd::blockSize;
    const auto* bytes = reinterpret_cast<const unsigned char*>(text.data());
    const unsigned char* const end = bytes + text.size();
    while (bytes != end) {
        std::size_t count = std::min(blockSize, static_cast<std::size_t>(end - bytes));
        if (count == blockSize && nu::simd::isAsciiBlock(bytes)) {
            nu::simd::widenBlock(bytes, units);
            bytes += blockSize;
            units += blockSize;
            continue;
        }
        for (; count > 0; --count, ++bytes) {
            const char16_t upper = page.upper[*bytes & 0x7F];
            *units++ = *bytes < 0x80 ? static_cast<char16_t>(*bytes) : upper;
        }
    }
}

const NarrowingTable& narrowingTableOf(const CodePage& page) noexcept {
    return narrowingTables[static_cast<std::size_t>(&page - nu::codePages.data())];
}

// Writes one byte a unit and returns the number of units lost.
std::size_t narrowSingleBytes(const CodePage& page, std::u16string_view text,
                              char* bytes) noexcept {
    constexpr std::size_t blockSize = nu::simd::blockSize;
    const NarrowingTable& table = narrowingTableOf(page);
    std::size_t lost = 0;
    while (!text.empty()) {
        const std::size_t count = std::min(blockSize, text.size());
        if (count < blockSize || !nu::simd::narrowAsciiBlock(text.data(), bytes)) {
            for (std::size_t place = 0; place < count; ++place) {
                const char16_t unit = text[place];
                const std::uint8_t byte =
                    unit < 0x80 ? static_cast<std::uint8_t>(unit) : table.find(page, unit);
                const bool isLost = byte == 0 && unit != 0;
                lost += isLost ? 1 : 0;
                bytes[place] = isLost ? '?' : static_cast<char>(byte);
            }
        }
        bytes += count;
        text.remove_prefix(count);
    }
    return lost;
}

std::size_t countUnpairedSurrogates(std::u16string_view text) noexcept {
    std::size_t count = 0;
    for (std::size_t index = 0; index < text.size(); ++index) {
        if (!host::isSurrogate(text[index])) {
            continue;
        }
        if (host::isHighSurrogate(text[index]) && index + 1 < text.size() &&
            host::isLowSurrogate(text[index + 1])) {
            ++index;
        } else {
            ++count;
        }
    }
    return count;
}

} // namespace

std::uint32_t NuGetSystemCodePage() noexcept { return systemCodePage(); }

void NuSetSystemCodePage(std::uint32_t codePage) {
    if (codePage == 0) {
        codePage = codePageOfEnvironment();
    } else if (codePage != cNuCodePageUtf8) {
        codePage = singleBytePage(codePage).number;
    }
    systemCodePage() = codePage;
}

std::uint32_t NuFindCodePage(std::string_view characterSet) {
    const std::uint32_t number = numberOfCharacterSet(characterSet);
    const bool isKnown = number == cNuCodePageUtf8 || findSingleBytePage(number) != nullptr;
    return isKnown ? number : 0;
}

std::size_t NuWidenAnsi(std::string_view text, char16_t* units, std::uint32_t codePage) {
    if (codePage == 0) {
        codePage = NuGetSystemCodePage();
    }
    if (codePage == cNuCodePageUtf8) {
        if (const std::optional<std::size_t> count = NuDecodeUtf8(text, units)) {
            return *count;
        }
        codePage = codePageWindows1252;
    }
    widenSingleBytes(singleBytePage(codePage), text, units);
    return text.size();
}

std::u16string NuAnsiStringToWideString(std::string_view text, std::uint32_t codePage) {
    std::u16string units(text.size(), u'\0');
    units.resize(NuWidenAnsi(text, units.data(), codePage));
    return units;
}

std::string NuWideStringToAnsiString(std::u16string_view text, std::uint32_t codePage) {
    std::size_t lost = 0;
    return NuWideStringToAnsiString(text, codePage, lost);
}

std::string NuWideStringToAnsiString(std::u16string_view text, std::uint32_t codePage,
                                     std::size_t& lost) {
    if (codePage == 0) {
        codePage = NuGetSystemCodePage();
    }
    if (codePage == cNuCodePageUtf8) {
        lost = countUnpairedSurrogates(text);
        return NuToUtf8(text);
    }
    const CodePage& page = singleBytePage(codePage);
    std::string bytes(text.size(), '\0');
    lost = narrowSingleBytes(page, text, bytes.data());
    return bytes;
}

std::size_t NuNarrowAnsiPrefix(std::u16string_view text, std::uint32_t codePage, char* bytes) {
    constexpr std::uint32_t firstWithControls = 28591; // the pages of ISO 8859 have them all
    constexpr char16_t afterControls = 0xA0;
    const CodePage& page = singleBytePage(codePage);
    const NarrowingTable& table = narrowingTableOf(page);
    const char16_t firstUpper = codePage < firstWithControls ? afterControls : char16_t{0x80};
    std::size_t count = 0;
    for (; count < text.size(); ++count) {
        const char16_t unit = text[count];
        if (unit < 0x80) {
            bytes[count] = static_cast<char>(unit);
            continue;
        }
        const std::uint8_t byte = unit < firstUpper ? std::uint8_t{0} : table.find(page, unit);
        if (byte == 0) {
            break;
        }
        bytes[count] = static_cast<char>(byte);
    }
    return count;
}
