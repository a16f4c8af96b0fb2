#include "window/bench/bench.h"

#include "core/faults/faulty_line.h"
#include "window/bench/bench_window.h"

#include <QAbstractButton>

#include <utility>

namespace varda::window {

Bench::Bench(Clock& clock, Controller* controller)
    : clock_(clock), controller_(controller != nullptr ? *controller : own_), player_(clock) {
    connect(&faults_, &FaultSwitch::faultDone, this, &Bench::takeNewsSoon);
    tellFaults([](const std::string&) {});
}

Bench::~Bench() = default;

MSComm::LineFactory Bench::faulty(MSComm::LineFactory makeLine) {
    return core::faulty(std::move(makeLine), faults_.injector(), clock_);
}

void Bench::tellFaults(std::function<void(const std::string& what)> told) {
    faults_.injector().setWatcher([this, told = std::move(told)](const FaultDone& fault) {
        told(fault.text);
        faults_.count(fault);
    });
}

void Bench::attach(const Parts& parts) {
    parts_.emplace(parts);
    living_.emplace(parts.pairs, controller_);
    player_.usePort(parts.portUse);
    connect(parts.button, &QAbstractButton::toggled, this, &Bench::setOpen);
}

std::optional<PreparedAnswer> Bench::answerTo(std::span<const std::uint8_t> request) {
    return living_->answerTo(request);
}

void Bench::followPairs(const PacketTableChange& change) {
    hits_.follow(change);
    takeNewsSoon();
}

void Bench::told(const Exchange& exchange) {
    unknown_.note(exchange);
    hits_.note(exchange);
    player_.told(exchange);
    expectations_.expected().told(exchange, parts_->lineBeingSent());
    takeNewsSoon();
}

void Bench::takeNewsSoon() {
    if (window_ != nullptr) {
        window_->takeNewsSoon();
    }
}

void Bench::setOpen(bool isOpen) {
    if (isOpen) {
        if (window_ == nullptr) {
            makeWindow();
        }
        window_->open();
    } else {
        close();
    }
}

void Bench::makeWindow() {
    const BenchSources sources = {
        .clock = clock_,
        .faults = faults_,
        .simulated = {.living = *living_,
                      .controller = controller_,
                      .unknown = unknown_,
                      .pairs = parts_->pairs,
                      .addPair = parts_->addPair},
        .expectations = expectations_,
        .scenarioLine = parts_->scenarioLine,
        .player = player_,
        .pairs = {.table = parts_->pairs, .hits = hits_, .show = parts_->showPair},
    };
    window_ = std::make_unique<BenchWindow>(sources, parts_->showHelp, parts_->programFolder);
    connect(window_.get(), &BenchWindow::closed, this, [this] { parts_->button->setChecked(false); });
}

void Bench::close() {
    if (window_ != nullptr) {
        window_->close();
    }
}

} // namespace varda::window
