#pragma once

#include <QObject>

#include <functional>

namespace varda::window {

/// Hears what asks the program from outside to end, while it lives: a signal of the terminal or of another
/// program, on Windows an event of the console. Without it the program would be gone at once, and whatever it
/// holds would be left as it stands.
///
/// A signal that was ignored when the program was started, as nohup does, stays ignored. There is one object
/// at a time.
class EndSignals {
public:
    /// @param end runs once, in the event loop
    explicit EndSignals(const std::function<void()>& end);
    EndSignals(const EndSignals&) = delete;
    EndSignals& operator=(const EndSignals&) = delete;
    ~EndSignals();

private:
    QObject context_; ///< of what is heard in the event loop
};

} // namespace varda::window
