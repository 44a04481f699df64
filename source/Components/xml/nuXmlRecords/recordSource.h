#pragma once

#include <cstddef>
#include <cstdint>
#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "host/runtime/stream.h"
#include "nuXmlParser/conforming/conformingPass.h"
#include "nuXmlRecords/partStream.h"
#include "nuXmlRecords/recordPath.h"
#include "nuXmlRecords/recordShare.h"
#include "nuXmlRecords/tagFinder.h"

namespace nu {

/// What part of a document records are taken from.
struct RecordPart {
    RecordStart start{};
    RecordShare share{};
    /// The caller promised that what reads as a start tag of a record is one. Where that is not
    /// so, some part meets it: the one that comes to it, or stops at it.
    bool isPromised = false;
};

/// Where a record stands.
struct RecordPlace {
    std::int64_t number = 0; ///< from 1, in what is read
    std::int64_t position = 0;
    std::int64_t line = 0; ///< 0 where nobody knows, as the column
    std::int64_t column = 0;
};

/// Takes the records out of a document, one after the other, while the conforming stage checks it.
class RecordSource final : private ElementWatch {
public:
    RecordSource(host::TStream& stream, RecordPath path, const TNuConformingOptions& options,
                 std::size_t sizeLimit);
    RecordSource(host::TStream& file, RecordPath path, const TNuConformingOptions& options,
                 std::size_t sizeLimit, RecordPart part);
    ~RecordSource();

    /// Goes to the next record; false behind the last one. Throws ENuXmlFault with its place in
    /// the whole document and what the stream throws; both again at every further call.
    bool next();
    /// The record, alone and complete.
    [[nodiscard]] std::string_view xml() const noexcept { return xml_; }
    /// The declarations that were added to it, as they stand in its start tag.
    [[nodiscard]] std::string_view addedDeclarations() const noexcept { return declarations_; }
    [[nodiscard]] const RecordPlace& place() const noexcept { return place_; }
    /// Of a part, the first record that came, and the start tag that it stopped at.
    [[nodiscard]] const RecordBorder& first() const noexcept { return first_; }
    [[nodiscard]] const RecordBorder& stop() const noexcept { return stop_; }
    [[nodiscard]] const TNuSourceForm& form() const noexcept { return pass_->form(); }

private:
    bool seeks(std::string_view name, std::size_t depth, std::int64_t offset) override;
    ElementUse use(const ElementStart& start) override;
    [[nodiscard]] std::string_view insertion() const noexcept override { return declarations_; }

    [[nodiscard]] bool readNext();
    [[nodiscard]] bool isPart() const noexcept { return part_ != nullptr; }
    [[nodiscard]] std::int64_t positionOf(std::int64_t offset, bool hasMark) const noexcept;
    void countLine(const ElementStart& start);
    void declare(const ElementStart& start);
    void noteBorder(const ElementStart& start, std::int64_t position);
    void keepPromise(std::int64_t position);
    void keepPromiseAtEnd();
    [[noreturn]] void failAt(std::int64_t position, std::u16string_view message);
    [[noreturn]] void rethrowPlaced(const ENuXmlFault& fault) const;

    RecordPath path_;
    std::size_t sizeLimit_;
    std::unique_ptr<RecordPart> part_; ///< null for a whole document
    std::optional<TagFinder> finder_;
    std::unique_ptr<PartStream> partStream_;
    std::unique_ptr<ConformingPass> pass_;

    std::string_view xml_;
    RecordPlace place_;
    std::string declarations_;
    std::uint64_t declarationsVersion_ = 0;
    bool hasOwnDeclarations_ = true;
    RecordBorder first_;
    RecordBorder stop_;
    bool hasEnded_ = false;
    bool isFaultPlaced_ = false; ///< a fault already tells its place in the whole document
    std::exception_ptr failure_;
};

} // namespace nu
