#pragma once

#include "core/base/runtime_error.h"
#include "core/link/mscomm.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <utility>

namespace varda::years {

/// Is told what a program does to its line, and what the line tells the program.
class LineWatcher {
public:
    LineWatcher() = default;
    LineWatcher(const LineWatcher&) = delete;
    LineWatcher& operator=(const LineWatcher&) = delete;
    virtual ~LineWatcher() = default;

    virtual void wrote(const Bytes& bytes, bool isTaken) = 0;
    virtual void refused(const Bytes& bytes) = 0;
    virtual void read(const Burst& burst) = 0;
    virtual void couldNotRead() = 0;
    virtual void discarded(std::size_t bytes) = 0;
    virtual void told(CommEvent event, std::size_t waiting) = 0;
};

/// Alters what is written, behind the back of whoever writes: a fault to be found.
using Meddler = std::function<void(Bytes& bytes)>;

/// Any line, with a watcher between it and its program.
class WatchedLine : public Line {
public:
    WatchedLine(std::unique_ptr<Line> line, LineWatcher& watcher, const Meddler& meddler)
        : line_(std::move(line)), watcher_(watcher), meddler_(meddler) {
        line_->setEventHandler([this](CommEvent event, const std::string& reason) {
            watcher_.told(event, event == CommEvent::HungUp ? 0 : line_->inBufferCount());
            raise(event, reason);
        });
    }

    void open(const LineSettings& settings) override { line_->open(settings); }
    void close() noexcept override { line_->close(); }
    std::size_t inBufferCount() const noexcept override { return line_->inBufferCount(); }
    std::size_t unsentWrites() const noexcept override { return line_->unsentWrites(); }
    void keepFirst(std::size_t most) noexcept override { line_->keepFirst(most); }
    Burst look(std::size_t from) const override { return line_->look(from); }

    Burst read() override {
        try {
            Burst burst = line_->read();
            watcher_.read(burst);
            return burst;
        } catch (const RuntimeError&) {
            watcher_.couldNotRead();
            throw;
        }
    }

    void discard() noexcept override {
        watcher_.discarded(line_->inBufferCount());
        line_->discard();
    }

    void write(const Bytes& bytes) override {
        Bytes carried = bytes;
        meddler_(carried);
        const std::size_t unsent = line_->unsentWrites();
        try {
            line_->write(carried);
        } catch (const RuntimeError&) {
            watcher_.refused(carried);
            throw;
        }
        watcher_.wrote(carried, line_->unsentWrites() == unsent);
    }

private:
    std::unique_ptr<Line> line_;
    LineWatcher& watcher_;
    const Meddler& meddler_;
};

/// The same lines, watched.
inline MSComm::LineFactory watched(MSComm::LineFactory makeLine, LineWatcher& watcher,
                                   const Meddler& meddler) {
    return [makeLine = std::move(makeLine), &watcher, &meddler](const std::string& name) {
        return std::make_unique<WatchedLine>(makeLine(name), watcher, meddler);
    };
}

} // namespace varda::years
