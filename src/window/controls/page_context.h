#pragma once

#include <functional>

namespace varda::inline core {
class PeriodTimer;
class SerialLink;
struct FrameImages;
} // namespace varda::core

namespace varda::window {

class Events;
class Form;

/// What the main window lends to each of its pages for the life of the process.
struct PageContext {
    Form& form;
    Events& events;
    SerialLink& link;
    FrameImages& images;
    PeriodTimer& tmrComm;
    /// Whether a run that has the port for itself may start; else the user has been told why not.
    const std::function<bool()>& isFreeForRun;
};

} // namespace varda::window
