#include "nuXmlParser/conforming/conformingStream.h"

#include "host/runtime/exception.h"
#include "host/runtime/streamMessages.h"
#include "nuXmlParser/conforming/conformingPass.h"

TNuConformingStream::TNuConformingStream(host::TStream& source, const TNuConformingOptions& options)
    : pass_(std::make_unique<nu::ConformingPass>(source, options, nu::ReaderForm::ByItself)) {}

TNuConformingStream::TNuConformingStream(std::unique_ptr<nu::ConformingPass> pass)
    : pass_(std::move(pass)) {}

TNuConformingStream::~TNuConformingStream() = default;

std::size_t TNuConformingStream::Read(void* buffer, std::size_t count) {
    auto* const target = static_cast<char*>(buffer);
    // 1. Bytes that were read before.
    if (position_ < static_cast<std::int64_t>(head_.size())) {
        const std::size_t again = head_.copy(target, count, static_cast<std::size_t>(position_));
        position_ += static_cast<std::int64_t>(again);
        return again;
    }
    // 2. New ones; the first of all are remembered.
    const std::size_t got = pass_->read(target, count);
    if (position_ == static_cast<std::int64_t>(head_.size()) && head_.size() + got <= headSize) {
        head_.append(target, got);
    }
    position_ += static_cast<std::int64_t>(got);
    return got;
}

std::size_t TNuConformingStream::Write(const void* /*buffer*/, std::size_t /*count*/) {
    throw host::EStreamError(host::messages::notWritable);
}

std::int64_t TNuConformingStream::Seek(std::int64_t offset, host::SeekOrigin origin) {
    const std::int64_t target = origin == host::SeekOrigin::Current ? position_ + offset : offset;
    const bool isRemembered = position_ <= static_cast<std::int64_t>(head_.size()) && target >= 0 &&
                              target <= static_cast<std::int64_t>(head_.size());
    if (origin == host::SeekOrigin::End || (target != position_ && !isRemembered)) {
        throw host::EStreamError(host::messages::seekError);
    }
    position_ = target;
    return position_;
}

std::int64_t TNuConformingStream::GetSize() {
    throw host::EStreamError(host::messages::sizeUnknown);
}

const TNuSourceForm& TNuConformingStream::Form() const noexcept { return pass_->form(); }

const std::optional<ENuXmlFault>& TNuConformingStream::PassedFault() const noexcept {
    return pass_->passedFault();
}

TNuSourceForm NuCheckXML(host::TStream& source, const TNuConformingOptions& options) {
    nu::ConformingPass pass(source, options, nu::ReaderForm::Told);
    pass.check();
    return pass.form();
}
