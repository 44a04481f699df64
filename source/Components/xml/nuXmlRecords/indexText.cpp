#include "nuXmlRecords/indexText.h"

#include <optional>

#include "host/runtime/digits.h"
#include "host/runtime/exception.h"
#include "nuXmlRecords/recordMessages.h"

namespace nu {

namespace {

constexpr std::string_view firstLine = "nuxml index 1\n";
constexpr std::string_view lastWord = "digest ";

[[noreturn]] void refuse() { throw host::Exception(messages::noIndex); }

} // namespace

std::uint64_t continueDigest(std::uint64_t digest, std::string_view bytes) noexcept {
    constexpr std::uint64_t prime = 0x100000001B3;
    for (const char byte : bytes) {
        digest = (digest ^ static_cast<unsigned char>(byte)) * prime;
    }
    return digest;
}

IndexTextWriter::IndexTextWriter() : text_(firstLine) {}

IndexTextWriter& IndexTextWriter::text(std::string_view value) {
    number(value.size());
    text_.append(value).append(" ");
    return *this;
}

std::string IndexTextWriter::finish() {
    const std::uint64_t digest = continueDigest(digestStart, text_);
    text_ += lastWord;
    number(digest).endLine();
    return std::move(text_);
}

IndexTextReader::IndexTextReader(std::string_view bytes) {
    const std::size_t last = bytes.rfind(lastWord);
    if (!bytes.starts_with(firstLine) || !bytes.ends_with('\n') || last == bytes.npos) {
        refuse();
    }
    rest_ = bytes.substr(last + lastWord.size());
    if (unsignedNumber() != continueDigest(digestStart, bytes.substr(0, last))) {
        refuse();
    }
    rest_ = bytes.substr(0, last);
    rest_.remove_prefix(firstLine.size());
}

/// A number and the one byte behind it.
template <class Number> Number IndexTextReader::read() {
    const std::optional<Number> value = host::takeDigits<Number>(rest_);
    if (!value || *value < Number{} || rest_.empty()) {
        refuse();
    }
    rest_.remove_prefix(1);
    return *value;
}

std::int64_t IndexTextReader::number() { return read<std::int64_t>(); }

std::uint64_t IndexTextReader::unsignedNumber() { return read<std::uint64_t>(); }

std::string_view IndexTextReader::text() {
    const auto length = static_cast<std::uint64_t>(number());
    if (length >= rest_.size()) {
        refuse();
    }
    const std::string_view value = rest_.substr(0, length);
    rest_.remove_prefix(length + 1);
    return value;
}

} // namespace nu
