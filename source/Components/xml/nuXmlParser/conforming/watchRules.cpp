#include "nuXmlParser/conforming/watchRules.h"

namespace nu {

void WatchRules::use(std::string_view name) {
    const std::size_t depth = elements_.depth() + 1;
    const ElementUse use =
        watch_->use({depth, texts_.offsetOf(texts_.place), source_, bindings_, elements_});
    if (use == ElementUse::Stop) {
        hasStopped_ = true;
        return;
    }
    usedDepth_ = depth;
    texts_.write();
    if (use == ElementUse::Take) {
        output_.keep();
        texts_.insert(texts_.place + 1 + name.size(), watch_->insertion());
    }
    owner_ = std::exchange(watch_, nullptr);
}

void WatchRules::endUsed(const char* behind) {
    texts_.place = behind;
    texts_.write();
    isTaken_ = !output_.isDiscarding();
    output_.discard();
    watch_ = std::exchange(owner_, nullptr);
    usedDepth_ = 0;
}

} // namespace nu
