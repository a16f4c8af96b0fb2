#pragma once

#include "core/link/line.h"

#include <memory>
#include <utility>
#include <vector>

namespace varda::test {

/// Both ends of lines in memory: what every line made here was handed, and what comes in from the far end.
class MemoryWire {
public:
    /// A closed line on this wire, which must outlive it.
    std::unique_ptr<Line> makeLine();

    /// What was written since the last call, one entry per write.
    std::vector<Bytes> takeWritten() { return std::exchange(written_, {}); }
    /// Bytes come in as one burst, and one receive event tells so. Nothing happens where no line is open.
    void receive(const Bytes& bytes);

private:
    class MemoryLine;

    MemoryLine* open_ = nullptr;
    std::vector<Bytes> written_;
};

class MemoryWire::MemoryLine : public Line {
public:
    explicit MemoryLine(MemoryWire& wire) : wire_(wire) {}
    MemoryLine(const MemoryLine&) = delete;
    MemoryLine& operator=(const MemoryLine&) = delete;
    ~MemoryLine() override { leave(); }

    void open(const LineSettings& /*settings*/) override { wire_.open_ = this; }
    void close() noexcept override { leave(); }
    std::size_t inBufferCount() const noexcept override { return input_.size(); }
    Bytes read() override { return std::exchange(input_, {}); }
    void discard() noexcept override { input_.clear(); }
    void write(const Bytes& bytes) override { wire_.written_.push_back(bytes); }

    void receive(const Bytes& bytes) {
        input_.insert(input_.end(), bytes.begin(), bytes.end());
        raise(CommEvent::Received);
    }

private:
    void leave() noexcept {
        input_.clear();
        if (wire_.open_ == this) {
            wire_.open_ = nullptr;
        }
    }

    MemoryWire& wire_;
    Bytes input_;
};

inline std::unique_ptr<Line> MemoryWire::makeLine() { return std::make_unique<MemoryLine>(*this); }

inline void MemoryWire::receive(const Bytes& bytes) {
    if (open_ != nullptr) {
        open_->receive(bytes);
    }
}

} // namespace varda::test
