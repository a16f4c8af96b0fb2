#include "device/device_line.h"

#include "core/base/blanks.h"
#include "core/base/scope_exit.h"
#include "device/connection.h"
#include "device/node_claim.h"
#include "device/refusals.h"
#include "device/serial_node.h"

#include <system_error>
#include <utility>

namespace varda::device {
namespace {

std::string textOf(const LineSettings& settings) {
    return std::to_string(settings.baudRate) + ',' + settings.parity + ',' +
           std::to_string(settings.dataBits) + ',' + std::to_string(settings.stopBits);
}

/// Asio's error category is its own, so only the number is the system's.
bool isWantOfHandles(const std::error_code& error) {
    const std::error_code ofSystem(error.value(), std::system_category());
    return ofSystem == std::errc::too_many_files_open || ofSystem == std::errc::too_many_files_open_in_system;
}

/// Without the name of the function that the system's words come behind.
std::string reasonOf(const std::runtime_error& error) {
    const auto* const ofSystem = dynamic_cast<const std::system_error*>(&error);
    return ofSystem != nullptr ? ofSystem->code().message() : error.what();
}

RuntimeError setUpFailure(const std::runtime_error& error, const std::string& label,
                          const LineSettings& settings) {
    const auto* const ofSystem = dynamic_cast<const std::system_error*>(&error);
    if (ofSystem != nullptr && isWantOfHandles(ofSystem->code())) {
        return cannotBeOpened(label, ofSystem->code().message());
    }
    return {comm_error::cannotBeSetUp, label + " cannot be set up as " + textOf(settings) + " (" +
                                           reasonOf(error) + "). Choose other settings."};
}

} // namespace

DeviceLine::DeviceLine(const std::string& name, Post post)
    : name_(withoutBlanksAround(name)), post_(std::move(post)) {}

DeviceLine::~DeviceLine() { DeviceLine::close(); }

void DeviceLine::open(const LineSettings& settings) {
    const std::string node = deviceNode(name_);
    if (node.empty()) {
        throw RuntimeError(comm_error::invalidPort, "No port is chosen. Type or choose its name.");
    }
    if (connection_) {
        throw portInUse(label());
    }
    claim_ = std::make_unique<NodeClaim>(node, label());
    const ScopeExit unclaimed([this] {
        if (!connection_) {
            claim_.reset();
        }
    });
    try {
        connect(settings);
    } catch (const std::runtime_error& error) {
        throw setUpFailure(error, label(), settings);
    }
}

void DeviceLine::connect(const LineSettings& settings) {
    // Filled before anybody reads it: news come by the connection's thread, tasks run on this one.
    const auto self = std::make_shared<std::weak_ptr<Connection>>();
    const auto tell = [this, self] {
        post_([this, self] {
            if (!self->expired()) {
                deliverNews();
            }
        });
    };
    connection_ = std::make_shared<Connection>(*claim_, settings, tell);
    *self = connection_;
}

void DeviceLine::close() noexcept {
    connection_.reset();
    claim_.reset();
}

std::size_t DeviceLine::inBufferCount() const noexcept {
    return connection_ ? connection_->inBufferCount() : 0;
}

Bytes DeviceLine::read() { return connection_ ? connection_->read() : Bytes{}; }

void DeviceLine::discard() noexcept {
    if (connection_) {
        connection_->discard();
    }
}

void DeviceLine::write(const Bytes& bytes) {
    if (!connection_) {
        throw RuntimeError(comm_error::readError,
                           "Nothing can be sent on " + label() + ". Open the port again.");
    }
    connection_->write(bytes);
}

void DeviceLine::keepFirst(std::size_t most) noexcept {
    if (connection_) {
        connection_->keepFirst(most);
    }
}

std::size_t DeviceLine::unsentWrites() const noexcept {
    return connection_ ? connection_->unsentWrites() : 0;
}

std::vector<Arrival> DeviceLine::arrivals() const {
    return connection_ ? connection_->arrivals() : std::vector<Arrival>{};
}

std::string DeviceLine::label() const {
    const std::string node = deviceNode(name_);
    return node == name_ ? node : name_ + " (" + node + ")";
}

/// In the order of their happening. Whoever hears of the first may close the line, or open it anew.
void DeviceLine::deliverNews() {
    const std::weak_ptr stillThis = connection_;
    const Connection::News news = connection_->takeNews();
    if (news.received && inBufferCount() > 0) {
        raise(CommEvent::Received);
    }
    if (news.unsent && !stillThis.expired()) {
        raise(CommEvent::Unsent);
    }
    if (news.hungUp && !stillThis.expired()) {
        close();
        raise(CommEvent::HungUp, label() + " went away: it was unplugged, or its far end was closed.");
    }
}

} // namespace varda::device
