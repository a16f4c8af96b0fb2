#pragma once

#include "core/link/line.h"

#include <memory>
#include <string>
#include <utility>

namespace varda::inline core {

/// A line with another one in it, which it stands for. What it does not do by itself the line in it does.
class LineAround : public Line {
public:
    void open(const LineSettings& settings) override { line_->open(settings); }
    void close() noexcept override { line_->close(); }
    std::size_t inBufferCount() const noexcept override { return line_->inBufferCount(); }
    Burst read() override { return line_->read(); }
    void discard() noexcept override { line_->discard(); }
    void write(const Bytes& bytes) override { line_->write(bytes); }
    void keepFirst(std::size_t most) noexcept override { line_->keepFirst(most); }
    std::size_t unsentWrites() const noexcept override { return line_->unsentWrites(); }
    Burst look(std::size_t from) const override { return line_->look(from); }
    std::string notice() const override { return line_->notice(); }

protected:
    explicit LineAround(std::unique_ptr<Line> line) : line_(std::move(line)) {
        line_->setEventHandler([this](CommEvent event, const std::string& reason) { pass(event, reason); });
    }

    Line& inner() const { return *line_; }
    /// An event of the line in it. It may be gone when the event has been raised.
    virtual void pass(CommEvent event, const std::string& reason) { raise(event, reason); }

private:
    std::unique_ptr<Line> line_;
};

} // namespace varda::core
