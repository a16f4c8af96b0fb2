#pragma once

#include "core/base/runtime_error.h"
#include "core/link/line.h"
#include "support/manual_clock.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace varda::test {

class FarEndLine;

/// The far end of the lines in memory of one window, which must outlive them: what was written and when, and
/// what comes in.
class FarEnd {
public:
    /// One write to the line.
    struct Write {
        std::chrono::milliseconds time; ///< since the far end was made
        Bytes bytes;
    };

    explicit FarEnd(const ManualClock& clock) : clock_(clock), start_(clock.now()) {}

    /// A closed line that ends here.
    std::unique_ptr<Line> makeLine();

    bool isOpen() const { return open_ != nullptr; }
    /// How the open line was set, as the port's settings text has it; empty while none is open.
    std::string settings() const { return isOpen() ? settings_ : std::string(); }
    /// Bytes come in, and their event; does nothing while no line is open.
    void deliver(const Bytes& bytes);
    /// The line goes away: closed first, told afterwards.
    void hangUp(const std::string& reason);
    /// Whether the line takes what is written.
    void refuseWrites(bool isRefusing) { isRefusing_ = isRefusing; }
    /// What was written since the last call.
    std::vector<Write> takeWritten() { return std::exchange(written_, {}); }

private:
    friend class FarEndLine;

    const ManualClock& clock_;
    const Clock::Time start_;
    FarEndLine* open_ = nullptr;
    std::string settings_;
    std::vector<Write> written_;
    bool isRefusing_ = false;
};

/// A line without a device, made by the far end.
class FarEndLine : public Line {
public:
    explicit FarEndLine(FarEnd& farEnd) : farEnd_(farEnd) {}
    FarEndLine(const FarEndLine&) = delete;
    FarEndLine& operator=(const FarEndLine&) = delete;
    FarEndLine(FarEndLine&&) = delete;
    FarEndLine& operator=(FarEndLine&&) = delete;
    ~FarEndLine() override { close(); }

    void open(const LineSettings& settings) override {
        farEnd_.open_ = this;
        farEnd_.settings_ = settingsText(settings);
    }
    void close() noexcept override {
        input_.clear();
        if (farEnd_.open_ == this) {
            farEnd_.open_ = nullptr;
        }
    }
    std::size_t inBufferCount() const noexcept override { return input_.size(); }
    Burst look(std::size_t from) const override { return burstBehind(from, input_, {}); }
    Burst read() override { return {.bytes = std::exchange(input_, {})}; }
    void discard() noexcept override { input_.clear(); }
    void write(const Bytes& bytes) override {
        if (farEnd_.isRefusing_) {
            throw RuntimeError(run_time_error::deviceError, "The line takes nothing.");
        }
        farEnd_.written_.push_back(
            {std::chrono::duration_cast<std::chrono::milliseconds>(farEnd_.clock_.now() - farEnd_.start_),
             bytes});
    }

private:
    friend class FarEnd;

    FarEnd& farEnd_;
    Bytes input_;
};

inline std::unique_ptr<Line> FarEnd::makeLine() { return std::make_unique<FarEndLine>(*this); }

inline void FarEnd::deliver(const Bytes& bytes) {
    if (open_ != nullptr) {
        open_->input_.insert(open_->input_.end(), bytes.begin(), bytes.end());
        open_->raise(CommEvent::Received);
    }
}

inline void FarEnd::hangUp(const std::string& reason) {
    if (FarEndLine* const line = open_) {
        line->close();
        line->raise(CommEvent::HungUp, reason);
    }
}

} // namespace varda::test
