#include "device/device_line.h"

#include "core/base/blanks.h"
#include "core/base/scope_exit.h"
#include "device/connection.h"
#include "device/node_claim.h"
#include "device/refusals.h"
#include "device/serial_node.h"

#include <utility>

namespace varda::device {

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
    claim(node);
    const ScopeExit unclaimed([this] {
        if (!connection_) {
            claim_.reset();
        }
    });
    try {
        connect(settings);
    } catch (const std::runtime_error& error) {
        throw cannotBeSetUp(label(), settings, error);
    }
}

void DeviceLine::claim(const std::string& node) {
    try {
        claim_ = std::make_unique<NodeClaim>(node, label());
    } catch (const RuntimeError& error) {
        const std::string meant = meantInCapitals(name_);
        if (meant.empty() || error.number() != comm_error::invalidPort) {
            throw;
        }
        throw RuntimeError(error.number(), error.what() + (" Did you mean " + meant + ", in capitals?"));
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

Burst DeviceLine::read() { return connection_ ? connection_->read() : Burst{}; }

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

Burst DeviceLine::look(std::size_t from) const { return connection_ ? connection_->look(from) : Burst{}; }

std::string DeviceLine::notice() const { return claim_ ? claim_->takeOver() : std::string(); }

std::string DeviceLine::label() const {
    const std::string node = deviceNode(name_);
    return node == name_ ? node : name_ + " (" + node + ")";
}

/// In the order of their happening. Whoever hears of the first may close the line, or open it anew.
void DeviceLine::deliverNews() {
    const std::weak_ptr stillThis = connection_;
    const Connection::News news = connection_->takeNews();
    if (news.received) {
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
