#include "nuXmlRecords/recordReader.h"

#include <optional>
#include <utility>

#include "host/runtime/exception.h"
#include "host/runtime/memoryStream.h"
#include "nuXmlRecords/recordHead.h"
#include "nuXmlRecords/recordIndex.h"
#include "nuXmlRecords/recordJson.h"
#include "nuXmlRecords/recordMessages.h"
#include "nuXmlRecords/recordOutline.h"
#include "nuXmlRecords/recordPath.h"
#include "nuXmlRecords/recordSource.h"

namespace nu {

/// A source, and the forms that were made of the record at hand.
class RecordReader::Body {
public:
    Body(host::TStream& stream, RecordPath path, const RecordOptions& options)
        : options_(options.reading),
          source_(std::make_unique<RecordSource>(stream, std::move(path), options.reading,
                                                 options.sizeLimit)) {}
    Body(host::TStream& file, RecordPath path, std::optional<RecordPart> part,
         const RecordOptions& options)
        : options_(options.reading) {
        if (part) {
            source_ = std::make_unique<RecordSource>(file, std::move(path), options.reading,
                                                     options.sizeLimit, *std::move(part));
        }
    }

    bool next() {
        isOutlineRead_ = isTreeRead_ = false;
        isAtRecord_ = false; // also where it throws
        isAtRecord_ = source_ != nullptr && source_->next();
        return isAtRecord_;
    }
    [[nodiscard]] const RecordSource* source() const noexcept { return source_.get(); }
    [[nodiscard]] std::string_view xml() const {
        if (!isAtRecord_) {
            throw host::Exception(messages::noRecord);
        }
        return source_->xml();
    }
    const RecordOutline& outline() {
        if (!isOutlineRead_) {
            outline_.read(xml());
            isOutlineRead_ = true;
        }
        return outline_;
    }
    TNuDOMDocument& tree() {
        if (!isTreeRead_) {
            host::TMemoryViewStream stream(xml());
            if (!document_) {
                document_ = TNuDOMDocument::Create();
            }
            document_->Clear();
            document_->LoadFromStream(stream, options_);
            isTreeRead_ = true;
        }
        return *document_;
    }

    RecordJson json;
    const TNuSourceForm noForm{};
    const RecordBorder noBorder{};

private:
    TNuConformingOptions options_;
    std::unique_ptr<RecordSource> source_; ///< null where the share is empty
    bool isAtRecord_ = false;
    RecordOutline outline_;
    bool isOutlineRead_ = false;
    NuRef<TNuDOMDocument> document_;
    bool isTreeRead_ = false;
};

RecordReader::RecordReader(host::TStream& stream, std::u16string_view path,
                           const RecordOptions& options)
    : body_(std::make_unique<Body>(stream, RecordPath(path), options)) {}

RecordReader::RecordReader(host::TStream& file, std::u16string_view path, const RecordIndex& index,
                           const RecordShare& share, const RecordOptions& options) {
    RecordPath records(path);
    index.Check(file);
    RecordPart part{index.StartFor(share.first), share, false};
    body_ = std::make_unique<Body>(file, std::move(records), std::move(part), options);
}

RecordReader::RecordReader(host::TStream& file, std::u16string_view path, const RecordShare& share,
                           const RecordOptions& options) {
    RecordPath records(path);
    std::optional<RecordPart> part = promisedPart(file, records, share);
    body_ = std::make_unique<Body>(file, std::move(records), std::move(part), options);
}

RecordReader::RecordReader(host::TStream& file, std::u16string_view path, const RecordStart& start,
                           const RecordShare& share, const RecordOptions& options)
    : body_(std::make_unique<Body>(file, RecordPath(path), RecordPart{start, share, false},
                                   options)) {}

RecordReader::~RecordReader() = default;

bool RecordReader::Next() { return body_->next(); }

std::int64_t RecordReader::Number() const noexcept {
    return body_->source() == nullptr ? 0 : body_->source()->place().number;
}

std::int64_t RecordReader::Position() const noexcept {
    return body_->source() == nullptr ? 0 : body_->source()->place().position;
}

std::int64_t RecordReader::Line() const noexcept {
    return body_->source() == nullptr ? 0 : body_->source()->place().line;
}

std::string_view RecordReader::AddedDeclarations() const noexcept {
    return body_->source() == nullptr ? std::string_view() : body_->source()->addedDeclarations();
}

const RecordBorder& RecordReader::First() const noexcept {
    return body_->source() == nullptr ? body_->noBorder : body_->source()->first();
}

const RecordBorder& RecordReader::Stop() const noexcept {
    return body_->source() == nullptr ? body_->noBorder : body_->source()->stop();
}

const TNuSourceForm& RecordReader::Form() const noexcept {
    return body_->source() == nullptr ? body_->noForm : body_->source()->form();
}

std::string_view RecordReader::Xml() const { return body_->xml(); }

TNuDOMDocument& RecordReader::Document() { return body_->tree(); }

void RecordReader::ReadObject(TNuObjectRef object, TNuDeserializeOptions options) {
    host::TMemoryViewStream stream(body_->xml());
    NuDeSerializeObject(object, stream, options);
}

void RecordReader::AppendJson(std::string& target) { body_->json.append(target, body_->outline()); }

void RecordReader::AppendRow(std::string& target, const RecordColumns& columns, RowForm form) {
    columns.appendRow(target, form, body_->outline());
}

} // namespace nu
