#pragma once

#include "core/base/runtime_error.h"
#include "core/link/mscomm.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace varda::test {

/// A wire in memory: the test plays the far end and chooses which calls fail.
class FakeWire {
public:
    /// The near end of the wire while a port is open.
    class NearEnd : public Line {
    public:
        NearEnd(FakeWire& wire, std::string name) : wire_(wire), name_(std::move(name)) {}
        NearEnd(const NearEnd&) = delete;
        NearEnd& operator=(const NearEnd&) = delete;
        ~NearEnd() override { wire_.nearEnd_ = nullptr; }

        void open(const LineSettings& settings) override {
            wire_.calls_.push_back("settings " + settingsText(settings));
            wire_.calls_.push_back("open " + name_);
            throwIfSet(wire_.openFailure_);
            wire_.nearEnd_ = this;
            if (!wire_.opens_) {
                raise(CommEvent::HungUp, "it went away while it was opened");
            }
        }
        void close() noexcept override {
            wire_.calls_.emplace_back("close");
            wire_.input_.clear();
        }
        std::size_t inBufferCount() const noexcept override { return wire_.input_.size() + wire_.counted_; }
        Burst read() override {
            wire_.calls_.emplace_back("read");
            if (wire_.readFailure_ && wire_.readLosesInput_) {
                wire_.input_.clear();
            }
            throwIfSet(wire_.readFailure_);
            const std::size_t counted = wire_.counted_;
            wire_.keepEverything();
            return {.bytes = std::exchange(wire_.input_, {}),
                    .arrivals = std::exchange(wire_.arrivals_, {}),
                    .counted = counted};
        }
        void discard() noexcept override {
            wire_.calls_.emplace_back("discard");
            wire_.input_.clear();
            wire_.arrivals_.clear();
            wire_.keepEverything();
        }
        void keepFirst(std::size_t most) noexcept override {
            wire_.kept_ = most;
            wire_.countSurplus();
        }
        void write(const Bytes& bytes) override {
            wire_.calls_.emplace_back("write");
            if (wire_.onWrite_) {
                wire_.onWrite_();
            }
            throwIfSet(wire_.writeFailure_);
            wire_.written_.push_back(bytes);
        }
        Burst look(std::size_t from) const override {
            return burstBehind(from, wire_.input_, wire_.arrivals_);
        }
        std::string notice() const override { return wire_.notice_; }
        void tell(CommEvent event, const std::string& reason = {}) { raise(event, reason); }

    private:
        FakeWire& wire_;
        std::string name_;
    };

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
    /// The line knows when its bytes came.
    void receiveAt(Arrival::Time time, const Bytes& bytes) {
        arrivals_.push_back({bytes.size(), time});
        receiveSilently(bytes);
    }
    /// Bytes that wait and are really there.
    std::size_t kept() const { return input_.size(); }
    /// Tells of bytes, whether or not some wait.
    void raiseReceived() { nearEnd_->tell(CommEvent::Received); }
    /// The line goes away: closed first, told afterwards.
    void hangUp(const std::string& reason) {
        input_.clear();
        nearEnd_->tell(CommEvent::HungUp, reason);
    }

    /// What opening comes upon from now on.
    void comeUpon(const std::string& notice) { notice_ = notice; }
    void failOpen(const RuntimeError& error) { openFailure_ = error; }
    /// The bytes that a failing read() was to return are lost, or wait on.
    void failRead(const RuntimeError& error, bool losesInput = true) {
        readFailure_ = error;
        readLosesInput_ = losesInput;
    }
    void failWrite(const RuntimeError& error) { writeFailure_ = error; }
    /// The line goes away while it is opened.
    void stayClosed() { opens_ = false; }
    /// Nothing fails any more.
    void heal() {
        openFailure_.reset();
        readFailure_.reset();
        writeFailure_.reset();
        opens_ = true;
    }

    /// Runs inside write(), before the bytes are gone.
    void onWrite(std::function<void()> look) { onWrite_ = std::move(look); }

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

    NearEnd* nearEnd_ = nullptr;
    bool opens_ = true;
    Bytes input_;
    std::vector<Arrival> arrivals_;
    std::size_t counted_ = 0;
    std::size_t kept_ = std::numeric_limits<std::size_t>::max();
    std::vector<Bytes> written_;
    std::vector<std::string> calls_;
    std::function<void()> onWrite_;
    std::string notice_;
    Failure openFailure_;
    Failure readFailure_;
    bool readLosesInput_ = true;
    Failure writeFailure_;
};

/// A serial control on a wire in memory, whatever the name of its port.
class FakePort : public FakeWire, public MSComm {
public:
    FakePort() : MSComm([this](const std::string& name) { return std::make_unique<NearEnd>(*this, name); }) {}
};

} // namespace varda::test
