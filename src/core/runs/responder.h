#pragma once

#include <cstdint>
#include <functional>
#include <span>

namespace varda::inline core {

class Form;
class PacketTable;
class Port;
struct LinkState;

/// Answers the requests that come in while the program stands in for a controller.
class Responder {
public:
    /// `noPair` as the argument of SelectPair clears both selections.
    static constexpr int noPair = -1;
    /// Shows one pair selected in both lists. The answer list may be too short for it.
    using SelectPair = std::function<void(int pair)>;

    Responder(LinkState& state, Port& commPLC, Form& form, const PacketTable& table, SelectPair selectPair)
        : state_(state), commPLC_(commPLC), form_(form), table_(table), selectPair_(std::move(selectPair)) {}

    /// Answers the request in RxBuffer with the answer of the first equal request of the table.
    ///
    /// It runs within the reception, where a failing statement is skipped: an answer that is missing or no
    /// frame text, or a port that refuses the bytes, sends nothing and is reported nowhere; the fields and
    /// the counter are left as after an answer.
    /// @return false where no request equals it; the reception then ends without its common end
    bool answer();

    /// Shows the received bytes as a frame text.
    /// @return the lowest row of the table with exactly that text, or noPair
    int FindSimReceivePacket(std::span<const std::uint8_t> received);

private:
    void discardRequest();
    void send(std::size_t pair);

    LinkState& state_;
    Port& commPLC_;
    Form& form_;
    const PacketTable& table_;
    SelectPair selectPair_;
};

} // namespace varda::inline core
