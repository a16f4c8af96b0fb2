#pragma once

#include "core/base/runtime_error.h"
#include "core/link/line_around.h"
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
class WatchedLine : public LineAround {
public:
    WatchedLine(std::unique_ptr<Line> line, LineWatcher& watcher, const Meddler& meddler)
        : LineAround(std::move(line)), watcher_(watcher), meddler_(meddler) {}

    Burst read() override {
        try {
            Burst burst = inner().read();
            watcher_.read(burst);
            return burst;
        } catch (const RuntimeError&) {
            watcher_.couldNotRead();
            throw;
        }
    }

    void discard() noexcept override {
        watcher_.discarded(inner().inBufferCount());
        inner().discard();
    }

    void write(const Bytes& bytes) override {
        Bytes carried = bytes;
        meddler_(carried);
        const std::size_t unsent = inner().unsentWrites();
        try {
            inner().write(carried);
        } catch (const RuntimeError&) {
            watcher_.refused(carried);
            throw;
        }
        watcher_.wrote(carried, inner().unsentWrites() == unsent);
    }

private:
    void pass(CommEvent event, const std::string& reason) override {
        watcher_.told(event, event == CommEvent::HungUp ? 0 : inner().inBufferCount());
        raise(event, reason);
    }

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
