#pragma once

#include "core/base/clock.h"
#include "core/link/line.h"
#include "core/virtual/controller.h"

#include <chrono>
#include <vector>

namespace varda::inline core {

/// The port name that stands for the embedded controller.
inline constexpr const char* virtualPortName = "VIRTUAL";

/// The line to the embedded controller: one write is one request, and line settings mean nothing.
///
/// The controller and the clock outlive the line. Only one line at a time can be open on a controller.
class VirtualLine : public Line {
public:
    /// From a request to its answer. Well inside the wait in which an answer has to arrive whole.
    static constexpr std::chrono::milliseconds answerDelay{5};

    VirtualLine(Controller& controller, Clock& clock) : controller_(controller), clock_(clock) {}
    VirtualLine(const VirtualLine&) = delete;
    VirtualLine& operator=(const VirtualLine&) = delete;
    ~VirtualLine() override;

    /// @throws RuntimeError 8005 where a line is open on the controller already, this one included
    void open(const LineSettings& settings) override;
    /// Answers still on their way are lost.
    void close() noexcept override;
    std::size_t inBufferCount() const noexcept override;
    Burst read() override;
    Burst look(std::size_t from) const override;
    /// Throws away what has arrived; an answer still on its way arrives.
    void discard() noexcept override;
    /// The request is carried out at once; its answer arrives in one burst after answerDelay, or never where
    /// the controller stays silent.
    /// @throws RuntimeError 8020 while the line is closed
    void write(const Bytes& bytes) override;

private:
    Controller& controller_;
    Clock& clock_;
    bool isOpen_ = false;
    Bytes input_;
    std::vector<Wait> answers_; ///< those on their way
};

} // namespace varda::core
