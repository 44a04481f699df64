#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "nodeJson.h"
#include "nodePaths.h"
#include "nuXmlDOM.h"
#include "output.h"

namespace tool {

/// What is shown of each result.
enum class ResultForm { Xml, Value, Path, Count, Json, Tsv, Csv };

/// Paths from each result to the cells of its row.
class Columns {
public:
    /// \param list paths with commas between them. Throws UsageError for what paths cannot be.
    Columns(std::u16string_view list, TNuDOMSelectOptions options);

    [[nodiscard]] std::size_t count() const noexcept { return paths_.size(); }
    [[nodiscard]] std::u16string nameOf(std::size_t index) const { return names_[index]; }
    /// The texts at a column of a node, none where there is nothing.
    [[nodiscard]] std::vector<std::u16string> cells(TNuDOMNode& node, std::size_t index) const;

private:
    std::vector<std::u16string> names_;
    std::vector<TNuDOMPath> paths_;
};

/// How results are shown.
struct ResultOptions {
    ResultForm form = ResultForm::Xml;
    bool hasHeader = false;  ///< the names of the columns stand in front
    bool hasNumbers = false; ///< JSON has numbers where the text is one
    const Columns* columns = nullptr;
};

/// Writes results, a line each.
class ResultWriter {
public:
    ResultWriter(Output& output, const ResultOptions& options);

    /// The results of another document follow. `place` stands in front of paths and counts.
    void beginDocument(std::string_view place);
    /// Throws host::EConvertError for a value with a reference that cannot be read, and what is
    /// beyond the limit of output.
    void write(TNuDOMNode& node);
    void writeCount(std::size_t count);
    /// Nothing more follows.
    void end();

private:
    void writeXml(const TNuDOMNode& node);
    void writeJson(TNuDOMNode& node);
    void writeJsonRow(TNuDOMNode& node);
    void writeRow(TNuDOMNode& node);
    void writeHeader();
    void writeCell(std::u16string_view text);

    Output& output_;
    ResultOptions options_;
    JsonWriter json_;
    std::string place_;
    NodePaths paths_;
    bool hasRows_ = false;
};

} // namespace tool
