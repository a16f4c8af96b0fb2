#pragma once

#include "core/base/clock.h"
#include "core/link/comm_error.h"
#include "core/link/line_around.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <ostream>
#include <string>
#include <utility>

namespace varda::faults {

/// How a call of a line fails.
enum class Failure : std::uint8_t {
    Refused,   ///< nothing happens but the error
    InputLost, ///< what waited to be read is gone; a device opens and cannot be set up
    HungUp,    ///< the line goes away behind the error, and while it is opened
    Unsent     ///< what is written finds no room
};

inline std::ostream& operator<<(std::ostream& out, Failure failure) {
    constexpr const char* names[] = {"Refused", "InputLost", "HungUp", "Unsent"}; // NOLINT(*-avoid-c-arrays)
    return out << names[static_cast<std::size_t>(failure)];
}

enum class Lasting : std::uint8_t { Once, ForGood };

inline std::ostream& operator<<(std::ostream& out, Lasting lasting) {
    return out << (lasting == Lasting::Once ? "Once" : "ForGood");
}

/// Counts the calls of all lines of a program, and has one of them fail, or that one and all behind it.
class CallFault {
public:
    CallFault(Failure failure, Lasting lasting, int call)
        : failure_(failure), lasting_(lasting), call_(call) {}

    /// One more call, which is told apart by `isRead`. @return whether it has to fail
    bool strikes(bool isRead) {
        ++calls_;
        const bool isStruck = !isHealed_ && (lasting_ == Lasting::Once ? calls_ == call_ : calls_ >= call_);
        if (isStruck) {
            hasStruck_ = true;
            hasRefused_ = hasRefused_ || !isRead;
        }
        return isStruck;
    }
    void heal() { isHealed_ = true; }

    Failure failure() const { return failure_; }
    bool hasStruck() const { return hasStruck_; }
    /// Whether an opening or a write has failed, which its user has to be told of.
    bool hasRefused() const { return hasRefused_; }

private:
    Failure failure_;
    Lasting lasting_;
    int call_;
    int calls_ = 0;
    bool isHealed_ = false;
    bool hasStruck_ = false;
    bool hasRefused_ = false;
};

/// Any line, whose calls fail as a fault has it.
class FailingLine : public LineAround {
public:
    FailingLine(std::unique_ptr<Line> line, CallFault& fault, Clock& clock)
        : LineAround(std::move(line)), fault_(fault), clock_(clock) {}

    void open(const LineSettings& settings) override {
        if (!fails(false)) {
            inner().open(settings);
            return;
        }
        if (fault_.failure() == Failure::Refused) {
            throw noSuchDevice("The line");
        }
        inner().open(settings);
        inner().close();
        if (fault_.failure() == Failure::InputLost) {
            throw RuntimeError(comm_error::cannotBeSetUp, "The line cannot be set up.");
        }
        raise(CommEvent::HungUp, goneAway);
    }

    Burst read() override {
        if (fails(true)) {
            if (fault_.failure() == Failure::InputLost) {
                inner().discard();
            }
            fail("The line could not be read.");
        }
        return inner().read();
    }

    void write(const Bytes& bytes) override {
        if (fault_.failure() == Failure::Unsent && fault_.strikes(false)) {
            ++unsent_;
            return;
        }
        if (fails(false)) {
            fail("The line could not be written to.");
        }
        inner().write(bytes);
    }

    std::size_t unsentWrites() const noexcept override { return unsent_ + inner().unsentWrites(); }

private:
    static constexpr const char* goneAway = "The line went away.";

    bool fails(bool isRead) { return fault_.failure() != Failure::Unsent && fault_.strikes(isRead); }

    [[noreturn]] void fail(const char* what) {
        if (fault_.failure() == Failure::HungUp) {
            hangUp_ = clock_.after(std::chrono::milliseconds(0), [this] {
                inner().close();
                raise(CommEvent::HungUp, goneAway);
            });
        }
        throw RuntimeError(comm_error::readError, what);
    }

    CallFault& fault_;
    Clock& clock_;
    Wait hangUp_;
    std::size_t unsent_ = 0;
};

} // namespace varda::faults
