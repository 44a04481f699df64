#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "host/runtime/stream.h"
#include "nuObj2Xml/entryFunctions.h"
#include "nuXmlDOM/core/document.h"
#include "nuXmlParser/conforming/conformingOptions.h"
#include "nuXmlParser/conforming/sourceForm.h"
#include "nuXmlParser/conforming/xmlFault.h"
#include "nuXmlRecords/recordColumns.h"
#include "nuXmlRecords/recordShare.h"

namespace nu {

class RecordIndex;

/// How records are read.
struct RecordOptions {
    /// How the document is read; a fault always ends the reading, and lines are known by Line().
    /// White space matters for trees and objects: XML, JSON and columns have it as it stands.
    TNuConformingOptions reading{};
    /// Records of more bytes are a fault with its place.
    std::size_t sizeLimit = std::size_t{256} * 1024 * 1024;
};

/// Reads the records of a document of any size, one after the other, in the memory of one:
/// ```
/// nu::RecordReader records(stream, u"dump/page");
/// while (records.Next()) { use(records.Document().SelectSingleNode(u"page/title")); }
/// ```
/// Records are the elements at a path: a name stands for every element of that name, wherever it is
/// (inside of a record it belongs to that); names with "/" between them for those elements from the
/// root down, "*" for any name. Prefixes do not matter.
///
/// The document is read as the XML standard means it, in any encoding that the conforming stage
/// knows: entities are expanded, defaults added, and what is not well-formed ends the reading with
/// ENuXmlFault and its place, when all records before it were delivered.
///
/// Workers share a document: each reads a share of a file and delivers the records that begin in
/// it. With an index that is exact for every document. Without one the caller promises that start
/// tags of the record's name stand nowhere but where records begin, all in the same surroundings;
/// a part that meets the contrary ends with a fault, and if no part does, they read together what
/// one reader would. Only UTF-8 can be shared.
class NUXML_API RecordReader {
public:
    /// Reads all records of the rest of a stream, which has to outlive the reader. Throws
    /// host::Exception for a path that is none.
    RecordReader(host::TStream& stream, std::u16string_view path,
                 const RecordOptions& options = {});
    /// Reads those of a share of a file. Nothing is read before the nearest place in front of the
    /// share that the index knows. Throws host::Exception also where the index was made of another
    /// state of the file, as far as its size and both ends tell.
    RecordReader(host::TStream& file, std::u16string_view path, const RecordIndex& index,
                 const RecordShare& share, const RecordOptions& options = {});
    /// Reads those of a share of a file on the promise that is told above. Nothing is read before
    /// the share but the beginning of the document, up to its first record, which has to come in
    /// the first 16 MiB. Lines are not known. Throws host::Exception for another encoding than
    /// UTF-8.
    RecordReader(host::TStream& file, std::u16string_view path, const RecordShare& share,
                 const RecordOptions& options = {});
    /// Reads those of a share from a place on that RecordIndexer or RecordIndex gave for it, whose
    /// state nobody checks any more, or that RecordGuess gave.
    RecordReader(host::TStream& file, std::u16string_view path, const RecordStart& start,
                 const RecordShare& share, const RecordOptions& options = {});
    RecordReader(const RecordReader&) = delete;
    RecordReader& operator=(const RecordReader&) = delete;
    ~RecordReader();

    /// Goes to the next record; false behind the last one. What was given of the record before is
    /// gone then. Throws ENuXmlFault and what the stream throws, again at each further call.
    bool Next();

    /// The number of the record, from 1, in what is read.
    [[nodiscard]] std::int64_t Number() const noexcept;
    /// The bytes before its "<" in the document; in another encoding than UTF-8, those of its text
    /// as UTF-8. A record that came out of an entity stands where the reference does.
    [[nodiscard]] std::int64_t Position() const noexcept;
    /// The line of its "<", from 1; 0 where it is not known.
    [[nodiscard]] std::int64_t Line() const noexcept;
    /// The declarations of namespaces around the record that are in scope in it and were added to
    /// its start tag, as they stand there: ` xmlns="urn:a" xmlns:b="urn:b"`.
    [[nodiscard]] std::string_view AddedDeclarations() const noexcept;
    /// Of a share that is read from a place on, its first record; none before that was read. A
    /// reader whose first record is where another one stopped began at a right place.
    [[nodiscard]] const RecordBorder& First() const noexcept;
    /// Of such a share, the start tag behind it at which the reading stopped; none before that, and
    /// where the document ends first.
    [[nodiscard]] const RecordBorder& Stop() const noexcept;
    /// What is known of the document so far: encoding, document type.
    [[nodiscard]] const TNuSourceForm& Form() const noexcept;

    // What follows throws host::Exception where there is no record at hand.

    /// The record as XML that stands alone, UTF-8, from "<" to ">".
    [[nodiscard]] std::string_view Xml() const;
    /// The record as the document element of a tree that belongs to the reader; it can be changed
    /// and written. The next record takes its place: what is held of it by then stays outside of
    /// the tree.
    [[nodiscard]] TNuDOMDocument& Document();
    /// Reads the record into an object, as NuDeSerializeObject does.
    void ReadObject(TNuObjectRef object, TNuDeserializeOptions options = {});
    /// Appends the record as JSON on one line, without a line break behind it. An element without
    /// attributes and child elements is a string, its text. Any other is an object: attributes are
    /// members with "@" in front, child elements members under their names, in an array where there
    /// are several of one name, and text beside them is "#text". Names stand as they are written,
    /// prefix and all; declarations of namespaces, comments and instructions are left out, and
    /// white space alone is text only where there are no child elements.
    void AppendJson(std::string& target);
    /// Appends the record as a row, with its line break.
    void AppendRow(std::string& target, const RecordColumns& columns, RowForm form);

private:
    class Body;

    std::unique_ptr<Body> body_;
};

} // namespace nu
