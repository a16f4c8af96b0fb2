#include "window/insight/insight.h"

#include "core/link/serial_link.h"
#include "window/insight/insight_window.h"

#include <QAbstractButton>

#include <utility>

namespace varda::window {

Insight::Insight(Clock& clock) : clock_(clock) {}

Insight::~Insight() = default;

MSComm::LineFactory Insight::traced(MSComm::LineFactory makeLine) {
    return core::traced(std::move(makeLine), recorder_, clock_);
}

void Insight::observe(SerialLink& link) {
    link_ = &link;
    link.observe(recorder_);
    link.observe(statistics_);
    link.observe(watch_);
}

void Insight::attach(const Parts& parts) {
    parts_.emplace(parts);
    recorder_.setPairs(parts.pairs);
    statistics_.setConditions(
        {.settings = [this] { return link_->port().settings(); }, .wantedPeriod = parts.wantedPeriod});
    connect(parts.button, &QAbstractButton::toggled, this, &Insight::setOpen);
}

void Insight::setOpen(bool isOpen) {
    record(isOpen);
    if (isOpen) {
        if (window_ == nullptr) {
            makeWindow();
        }
        window_->open();
    } else if (window_ != nullptr) {
        window_->close();
    }
}

void Insight::record(bool isOn) {
    if (isOn) {
        recorder_.open();
        statistics_.open();
        watch_.open();
    } else {
        recorder_.close();
        statistics_.close();
        watch_.close();
    }
}

void Insight::makeWindow() {
    const InsightSources sources = {
        .clock = clock_, .trace = trace_, .statistics = statistics_, .watch = watch_, .names = names_};
    window_ = std::make_unique<InsightWindow>(sources, parts_->showHelp, parts_->programFolder);
    trace_.setWakeUp([this] { window_->takeNewsSoon(); });
    connect(window_.get(), &InsightWindow::closed, this, [this] { parts_->button->setChecked(false); });
    auto* const caret = new FrameCaret(parts_->pages, parts_->requestOf, window_.get());
    connect(caret, &FrameCaret::moved, window_.get(), &InsightWindow::explain);
}

void Insight::close() {
    if (window_ != nullptr) {
        window_->close();
    }
}

} // namespace varda::window
