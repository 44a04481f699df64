#include "fileJobs.h"

namespace tool {

FileJobs::FileJobs(const std::vector<Operand>& operands, bool isInPlace,
                   std::optional<std::string_view> target, bool isForced, bool isReadOnly) {
    if (operands.size() > 1 && !isInPlace && !isReadOnly) {
        throw UsageError("more than one file, which needs -i");
    }
    if (operands.empty()) {
        jobs_.push_back({standardInput, targetOf(standardInput, isInPlace, target), isForced});
    }
    for (const Operand& operand : operands) {
        jobs_.push_back({operand.text, targetOf(operand.text, isInPlace, target), isForced});
    }
}

} // namespace tool
