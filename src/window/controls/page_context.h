#pragma once

namespace varda::inline core {
class Form;
class PeriodTimer;
class SerialLink;
struct FrameImages;
} // namespace varda::inline core

namespace varda::window {

class Events;

/// What the main window lends to each of its pages for the life of the process.
struct PageContext {
    Form& form;
    Events& events;
    SerialLink& link;
    FrameImages& images;
    PeriodTimer& tmrComm;
};

} // namespace varda::window
