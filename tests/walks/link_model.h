#pragma once

#include "walks/desk.h"

namespace varda::window_model {

class World;

/// The port, what comes in and the communication timer.
class LinkModel {
public:
    explicit LinkModel(World& world);

    void test();
    void toggleOpen();
    /// Octets come in, and their event.
    void deliver(const Octets& octets);
    /// Hands octets to the open port, what waits in its input thrown away before.
    void write(const Octets& octets);
    /// What every master page's send does once the port is open.
    void sendRequest(const Octets& octets, int expected);
    void enterMode(int mode);
    void tellCounters();
    /// An entry of a settings list.
    static std::string entry(const std::string& list, int index);

    Action draw(Draw& draw) const;

    int commMode = 0x21;
    bool isOpen = false;
    int rxExpected = 0;
    int rxCount = 0;
    int waitTicks = 0;
    bool answerReceived = false;
    bool waitingAnswer = false;
    Octets buffer; ///< what the last reception read
    Octets input;
    Ticker timer;

private:
    void received();
    void wait(int milliseconds, const std::function<void()>& then);
    void endWaits();
    void answerEnds();
    void settle();
    void readAll();
    void complete();
    void commonEnd();
    void tick();
    void masterTick();
    void timeOut(const std::string& statusField);
    std::string settings();

    World& world_;
    bool inReceive_ = false;
    bool waits_ = false;
    bool settles_ = false; ///< what waits is a request to the simulation
    int waitRun_ = 0;
};

/// What the link knows of a master page.
struct Page {
    std::string name;
    int bitMode;
    int wordMode;
    std::string send;
    std::string again;
    std::string period;
    std::string status;     ///< of the page's own texts
    std::string doneStatus; ///< of "Data Receive OK !!"
    std::string lostStatus; ///< of "No Answer From PLC"
    std::string request;
    std::string answer;
};
const std::vector<Page>& pages();
/// The page of a mode; nothing for one that is no master's.
const Page* pageOf(int mode);

} // namespace varda::window_model
