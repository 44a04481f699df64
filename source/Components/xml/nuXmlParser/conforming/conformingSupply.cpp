#include "nuXmlParser/conforming/conformingSupply.h"

#include <algorithm>
#include <cstddef>
#include <string>

namespace nu {

ConformingSupply::ConformingSupply(std::string_view text, const TNuConformingOptions& options)
    : options_(options), source_(ByteSource(text)) {}

bool ConformingSupply::open() {
    source_.open(options_.encoding);
    if (source_.staysInPlace()) {
        normaliser_.emplace(source_, output_, options_, ReaderForm::Told, form_);
    }
    return normaliser_.has_value();
}

const TNuSourceForm& ConformingSupply::form() {
    source_.describe(form_);
    form_.isChanged = normaliser_->texts().isChanged();
    return form_;
}

std::string_view ConformingSupply::next() {
    output_.take(given_);
    // 1. The "<" by itself, so that what it begins can be passed by.
    const TextStack& texts = normaliser_->texts();
    given_ = 0;
    if (!isLessGiven_ && normaliser_->mayPassPlain() && texts.place != texts.end &&
        *texts.place == '<') {
        isLessGiven_ = true;
        return "<";
    }
    // 2. Something, or the end. What came before a fault is given first.
    while (output_.text().empty() && !hasEnded_ && !failure_) {
        try {
            hasEnded_ = !run();
        } catch (const ENuXmlFault& fault) {
            if (options_.onFault == cfPassOn) {
                passOn(fault);
            } else {
                failure_ = std::current_exception();
                normaliser_->texts().write();
            }
        }
    }
    if (output_.text().empty() && failure_) {
        std::rethrow_exception(failure_);
    }
    given_ = output_.text().size();
    const std::string_view piece = output_.text().substr(isLessGiven_ ? 1 : 0);
    isLessGiven_ = false;
    return piece;
}

bool ConformingSupply::run() {
    constexpr std::ptrdiff_t cost = 512; // of a step, in bytes that could be passed meanwhile
    constexpr std::size_t blockSize = 16 * 1024;
    gain_ -= cost;
    if (gain_ > 0) {
        return normaliser_->runStep();
    }
    gain_ = mostGain;
    return normaliser_->runBlock(blockSize);
}

/// Everything behind a fault comes at once: nobody knows where its tags end.
void ConformingSupply::passOn(const ENuXmlFault& fault) {
    TextStack& texts = normaliser_->texts();
    texts.leaveAll();
    std::string rest;
    while (source_.passOn(texts.notWritten(), rest)) {
    }
    // To whom this is given a NUL is the end, which then comes behind the last character.
    std::erase(rest, '\0');
    output_.append(rest);
    output_.append('\0');
    hasEnded_ = true;
    if (onPassedFault) {
        onPassedFault(fault);
    }
}

bool ConformingSupply::promisesMore() const noexcept { return !hasEnded_; }

std::string_view ConformingSupply::textFrom(NuXmlChar last) const noexcept {
    const TextStack& texts = normaliser_->texts();
    if (hasEnded_ || failure_ || !normaliser_->mayPassPlain()) {
        return {};
    }
    // What comes from an entity or was changed is no text to pass by, but behind a tag it goes on.
    const char* const start = texts.place - (isLessGiven_ ? 0 : 1);
    return static_cast<unsigned char>(*start) == last && (*start == '<' || *start == '>')
               ? std::string_view(start, texts.end)
               : std::string_view();
}

std::string_view ConformingSupply::moreFrom(const char* place) {
    return showFrom(place, 16 * 1024);
}

std::string_view ConformingSupply::muchMoreFrom(const char* place) {
    // What is looked at again as more of it shows is looked at little more than once in all.
    constexpr std::ptrdiff_t growth = 8;
    return showFrom(place, growth * (normaliser_->texts().end - place));
}

/// The text from a place on, if more than showed had to show for it to be that long.
std::string_view ConformingSupply::showFrom(const char* place, std::ptrdiff_t enough) {
    TextStack& texts = normaliser_->texts();
    bool isMore = false;
    while (texts.end - place < enough && texts.showAhead()) {
        isMore = true;
    }
    return isMore ? std::string_view(place, texts.end) : std::string_view();
}

void ConformingSupply::pass(const char* end) {
    isLessGiven_ = *end == '<';
    gain_ = std::min(gain_ + (end - normaliser_->texts().place), mostGain);
    normaliser_->passTo(isLessGiven_ ? end : end + 1);
}

} // namespace nu
