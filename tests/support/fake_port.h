#pragma once

#include "core/base/runtime_error.h"
#include "core/link/port.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace varda::test {

/// A port in memory: the test plays the far end and chooses which calls fail.
class FakePort : public Port {
public:
    void setCommPort(const std::string& name) override { commPort_ = name; }
    void setSettings(const std::string& settings) override {
        calls_.push_back("settings " + settings);
        throwIfSet(settingsFailure_);
    }
    void open() override {
        calls_.push_back("open " + commPort_);
        throwIfSet(openFailure_);
        open_ = opens_;
    }
    void close() noexcept override {
        calls_.emplace_back("close");
        open_ = false;
        input_.clear();
    }
    bool isOpen() const noexcept override { return open_; }

    std::size_t inBufferCount() const noexcept override { return open_ ? input_.size() + counted_ : 0; }
    Bytes read() override {
        calls_.emplace_back("read");
        throwIfClosed();
        if (readFailure_ && readLosesInput_) {
            input_.clear();
        }
        throwIfSet(readFailure_);
        keepEverything();
        return std::exchange(input_, {});
    }
    void discard() noexcept override {
        calls_.emplace_back("discard");
        input_.clear();
        keepEverything();
    }
    void keepFirst(std::size_t most) noexcept override {
        kept_ = most;
        countSurplus();
    }
    void write(const Bytes& bytes) override {
        calls_.emplace_back("write");
        if (onWrite_) {
            onWrite_();
        }
        throwIfClosed();
        throwIfSet(writeFailure_);
        written_.push_back(bytes);
    }

    /// Bytes come in and the receive event tells so.
    void receive(const Bytes& bytes) {
        receiveSilently(bytes);
        raiseReceived();
    }
    /// Bytes come in before their event does.
    void receiveSilently(const Bytes& bytes) {
        input_.insert(input_.end(), bytes.begin(), bytes.end());
        countSurplus();
    }
    /// Bytes that wait and are really there.
    std::size_t kept() const { return input_.size(); }
    void raiseReceived() { raise(CommEvent::Received); }
    /// The line goes away: closed first, told afterwards.
    void hangUp(const std::string& reason) {
        open_ = false;
        input_.clear();
        raise(CommEvent::HungUp, reason);
    }

    void failOpen(const RuntimeError& error) { openFailure_ = error; }
    void failSettings(const RuntimeError& error) { settingsFailure_ = error; }
    /// The bytes that a failing read() was to return are lost, or wait on.
    void failRead(const RuntimeError& error, bool losesInput = true) {
        readFailure_ = error;
        readLosesInput_ = losesInput;
    }
    void failWrite(const RuntimeError& error) { writeFailure_ = error; }
    /// open() returns, but the port stays closed.
    void stayClosed() { opens_ = false; }
    /// Nothing fails any more.
    void heal() {
        openFailure_.reset();
        settingsFailure_.reset();
        readFailure_.reset();
        writeFailure_.reset();
        opens_ = true;
    }

    /// Runs inside write(), before the bytes are gone.
    void onWrite(std::function<void()> look) { onWrite_ = std::move(look); }

    const std::string& commPort() const { return commPort_; }
    /// One entry per write().
    const std::vector<Bytes>& written() const { return written_; }
    /// The calls in their order: "settings ...", "open ...", "close", "read", "discard", "write".
    const std::vector<std::string>& calls() const { return calls_; }
    void forgetCalls() { calls_.clear(); }

private:
    using Failure = std::optional<RuntimeError>;

    static void throwIfSet(const Failure& failure) {
        if (failure) {
            throw RuntimeError(*failure);
        }
    }
    void countSurplus() {
        const std::size_t surplus = input_.size() - std::min(input_.size(), kept_);
        counted_ += surplus;
        input_.resize(input_.size() - surplus);
    }
    void keepEverything() {
        counted_ = 0;
        kept_ = std::numeric_limits<std::size_t>::max();
    }
    void throwIfClosed() const {
        if (!open_) {
            throw RuntimeError(8012, "The port is not open");
        }
    }

    std::string commPort_;
    bool open_ = false;
    bool opens_ = true;
    Bytes input_;
    std::size_t counted_ = 0;
    std::size_t kept_ = std::numeric_limits<std::size_t>::max();
    std::vector<Bytes> written_;
    std::vector<std::string> calls_;
    std::function<void()> onWrite_;
    Failure openFailure_;
    Failure settingsFailure_;
    Failure readFailure_;
    bool readLosesInput_ = true;
    Failure writeFailure_;
};

} // namespace varda::test
