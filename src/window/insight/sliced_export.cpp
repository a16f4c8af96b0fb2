#include "window/insight/sliced_export.h"

#include <utility>

namespace varda::window {

void SlicedExport::start(const Trace& trace, std::vector<Trace::Number> lines, TraceForm form,
                         const RegisterNames& names, const Ended& ended) {
    cancel();
    export_.emplace(trace, std::move(lines), form, names);
    work_.start(
        [this] {
            return export_->write([this](std::string_view part) { content_ += part; }, SlicedWork::slice);
        },
        [this, ended] { ended(std::exchange(content_, {}), export_->written()); });
}

void SlicedExport::cancel() {
    work_.cancel();
    content_.clear();
}

std::optional<int> SlicedExport::percent() const {
    constexpr std::size_t whole = 100;
    return work_.isRunning() ? std::optional(static_cast<int>(export_->done() * whole / export_->size()))
                             : std::nullopt;
}

} // namespace varda::window
