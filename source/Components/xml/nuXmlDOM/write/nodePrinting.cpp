#include <ostream>

#include "nuXmlDOM/core/node.h"
#include "nuXmlDOM/write/nodeSaving.h"

// What streams of the standard library are given.

namespace {

class PrintTarget final : public nu::OutputTarget<char> {
public:
    explicit PrintTarget(std::ostream& stream) : stream_(stream) {}
    void take(std::string_view block) override {
        stream_.write(block.data(), static_cast<std::streamsize>(block.size()));
    }

private:
    std::ostream& stream_;
};

} // namespace

std::ostream& operator<<(std::ostream& stream, const TNuDOMNode& node) {
    PrintTarget target(stream);
    nu::writeNode(node, target, {});
    return stream;
}
