#pragma once

#include "core/link/line.h"

#include <memory>
#include <vector>

namespace varda::inline core {

/// The serial control: takes settings as a text, opens the line that a port's name stands for, and raises its
/// events.
///
/// Event handlers may call every function of the control, open() and close() included, but not destroy it,
/// and must not throw.
class MSComm : public Port {
public:
    /// Makes the closed line that a port's name stands for.
    using LineFactory = std::function<std::unique_ptr<Line>(const std::string& name)>;

    explicit MSComm(LineFactory makeLine);
    MSComm(const MSComm&) = delete;
    MSComm& operator=(const MSComm&) = delete;
    ~MSComm() override;

    void setCommPort(const std::string& name) override;
    /// Takes baud rate, parity letter (n, e, o), data bits (5 .. 8) and stop bits (1, 2), for the next open.
    /// @throws RuntimeError 380 where one of them is missing or out of range; the settings stay as they were
    void setSettings(const std::string& settings) override;

    /// @throws RuntimeError 8005 where it is open already, and what the line throws
    void open() override;
    void close() noexcept override;
    bool isOpen() const noexcept override;

    std::size_t inBufferCount() const noexcept override;
    /// @throws RuntimeError 8012
    Bytes read() override;
    void discard() noexcept override;
    void write(const Bytes& bytes) override;
    void keepFirst(std::size_t most) noexcept override;
    std::size_t unsentWrites() const noexcept override;

private:
    void pass(const Line* source, CommEvent event, const std::string& reason);
    Line& openLine() const;
    void dropClosedLines() noexcept;

    LineFactory makeLine_;
    std::string name_;
    LineSettings settings_;
    /// The open line, and lines that closed inside their own event and must not be destroyed there.
    std::vector<std::unique_ptr<Line>> lines_;
    Line* open_ = nullptr;
    int eventDepth_ = 0;
};

} // namespace varda::inline core
