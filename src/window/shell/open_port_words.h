#pragma once

#include <string>

namespace varda::window {

/// What is known of the port and its settings, for the words that tell it.
struct PortState {
    std::string field;   ///< what the user has typed or chosen
    std::string tested;  ///< what is open, or what would be opened; empty before the first good test
    std::string awaited; ///< what is to be opened when it comes back; empty where nothing is
    bool isOpen = false;
    std::string baudRate; ///< as the lists have them, also empty
    std::string dataBits;
    std::string stopBits;
    std::string parity;
};

/// What is open, or what would be opened: "Open: VIRTUAL, 9600 8-N-1".
std::string openPortText(const PortState& state);

/// The port that openPortText() names; empty where it names none.
std::string portInText(const PortState& state);

/// Whether the field names another port than the one that is open, or would be opened.
bool waitsForTest(const PortState& state);

/// What has to be done that the field's port is the one that opens.
std::string fieldText(const PortState& state);

} // namespace varda::window
