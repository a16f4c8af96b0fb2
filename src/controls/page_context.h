#pragma once

namespace varda {

class Events;
class Form;
class PeriodTimer;
class SerialLink;
struct FrameImages;

/// What the main window lends to each of its pages for the life of the process.
struct PageContext {
    Form& form;
    Events& events;
    SerialLink& link;
    FrameImages& images;
    PeriodTimer& tmrComm;
};

} // namespace varda
