#include "core/link/mscomm.h"

#include "core/base/blanks.h"
#include "core/base/runtime_error.h"
#include "core/link/comm_error.h"

#include <array>
#include <charconv>
#include <limits>

namespace varda::inline core {
namespace {

using Fields = std::array<std::string_view, 4>;

/// Cuts "9600,n,8,1" at its commas. @throws RuntimeError 380 unless there are four fields
Fields fieldsOf(std::string_view text) {
    Fields fields;
    for (std::size_t index = 0; index < fields.size(); ++index) {
        const auto comma = text.find(',');
        const bool isLast = index + 1 == fields.size();
        if (isLast != (comma == std::string_view::npos)) {
            throw invalidPropertyValue();
        }
        fields.at(index) = withoutBlanksAround(text.substr(0, comma));
        text.remove_prefix(isLast ? text.size() : comma + 1);
    }
    return fields;
}

/// A field's name, and the numbers that it takes.
struct NumberField {
    std::string_view name;
    int least;
    int most;
};

constexpr NumberField baudRateField = {"Baud rate", 1, std::numeric_limits<int>::max()};
constexpr NumberField dataBitsField = {"Data bits", 5, 8};
constexpr NumberField stopBitsField = {"Stop bits", 1, 2};

int numberOf(std::string_view text, const NumberField& field) {
    int number = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc{} || stop != end || number < field.least || number > field.most) {
        RuntimeError refused = invalidPropertyValue();
        refused.advise(std::string(field.name) + " \"" + std::string(text) + "\" is no number of " +
                       std::to_string(field.least) + " to " + std::to_string(field.most) +
                       ". Choose one from the list.");
        throw refused;
    }
    return number;
}

char parityOf(std::string_view field) {
    if (field == "n" || field == "N") {
        return 'n';
    }
    if (field == "e" || field == "E") {
        return 'e';
    }
    if (field == "o" || field == "O") {
        return 'o';
    }
    throw invalidPropertyValue();
}

LineSettings settingsOf(std::string_view text) {
    const Fields fields = fieldsOf(text);
    LineSettings settings;
    settings.baudRate = numberOf(fields[0], baudRateField);
    settings.parity = parityOf(fields[1]);
    settings.dataBits = numberOf(fields[2], dataBitsField);
    settings.stopBits = numberOf(fields[3], stopBitsField);
    return settings;
}

} // namespace

MSComm::MSComm(LineFactory makeLine) : makeLine_(std::move(makeLine)) {}

MSComm::~MSComm() { close(); }

void MSComm::setCommPort(const std::string& name) { name_ = name; }

void MSComm::setSettings(const std::string& settings) { settings_ = settingsOf(settings); }

void MSComm::open() {
    if (isOpen()) {
        throw RuntimeError(comm_error::inUse, "The port is open already.");
    }
    notice_.clear();
    dropClosedLines();
    lines_.push_back(makeLine_(name_));
    Line* const line = lines_.back().get();
    line->setEventHandler(
        [this, line](CommEvent event, const std::string& reason) { pass(line, event, reason); });
    open_ = line; // a line that goes away while it opens says so to the open one
    try {
        line->open(settings_);
        notice_ = line->notice();
    } catch (...) {
        if (open_ == line) {
            open_ = nullptr;
        }
        dropClosedLines();
        throw;
    }
}

void MSComm::close() noexcept {
    if (open_ != nullptr) {
        open_->close();
        open_ = nullptr;
    }
    dropClosedLines();
}

bool MSComm::isOpen() const noexcept { return open_ != nullptr; }

std::size_t MSComm::inBufferCount() const noexcept { return isOpen() ? open_->inBufferCount() : 0; }

Burst MSComm::read() { return openLine().read(); }

void MSComm::discard() noexcept {
    if (isOpen()) {
        open_->discard();
    }
}

void MSComm::write(const Bytes& bytes) { openLine().write(bytes); }

void MSComm::keepFirst(std::size_t most) noexcept {
    if (isOpen()) {
        open_->keepFirst(most);
    }
}

std::size_t MSComm::unsentWrites() const noexcept { return isOpen() ? open_->unsentWrites() : 0; }

/// A line that is no longer the open one has nothing to tell any more.
void MSComm::pass(const Line* source, CommEvent event, const std::string& reason) {
    if (source != open_) {
        return;
    }
    if (event == CommEvent::HungUp) {
        open_ = nullptr;
    } else if (event == CommEvent::Received && open_->inBufferCount() == 0) {
        return;
    }
    if (handler_) {
        ++eventDepth_;
        handler_(event, reason);
        --eventDepth_;
    }
}

Line& MSComm::openLine() const {
    if (!isOpen()) {
        throw RuntimeError(comm_error::notOpen, "The port is not open. Open it first.");
    }
    return *open_;
}

void MSComm::dropClosedLines() noexcept {
    if (eventDepth_ == 0) {
        lines_.clear();
    }
}

} // namespace varda::core
