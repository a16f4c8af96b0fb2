#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace varda::inline core {

class Form;

/// What the link is doing beyond the request codes of command::.
namespace comm_mode {
constexpr std::int16_t monitorIdle = 0x80; ///< monitor page shown, nothing listed
constexpr std::int16_t monitoring = 0x81;
constexpr std::int16_t scenario = 0xC0;
constexpr std::int16_t simulation = 0xFF;
} // namespace comm_mode

/// Which controls of a master page the link tells what, and which ones it asks.
struct Route {
    std::int16_t bitMode;  ///< CommMode while the bit option is chosen
    std::int16_t wordMode; ///< CommMode while the word option is chosen

    std::string_view bitOption;
    std::string_view wordOption;
    std::string_view destination;
    std::string_view source;
    std::string_view length; ///< empty where the page has no length list
    std::string_view registerKind;
    std::string_view registerNumber;
    std::string_view registerBit;

    std::string_view sendButton;
    std::string_view enabledByOpening; ///< the send button that opening the port enables
    std::string_view continuousBox;
    std::string_view periodField;
    bool repeatsOnlyWhenAnswered; ///< continuous sending waits for the answer

    std::string_view request;          ///< shows the request
    std::string_view answer;           ///< shows the answer
    std::string_view status;           ///< the page's own status line
    std::string_view completionStatus; ///< told "Data Receive OK !!"
    std::string_view silenceStatus;    ///< told "No Answer From PLC"
};

/// The four master pages, in the order of their mode options.
std::span<const Route> masterRoutes();

/// The route of a CommMode of 0x21 .. 0x26, or nullptr.
const Route* findRoute(std::int16_t commMode);

/// The fields that a send of the page needs filled: register and number, and the bit while the bit option is
/// chosen; none while neither option is chosen.
std::vector<std::string_view> fieldsNeededToSend(const Route& route, const Form& form);

/// The fields that continuous sending needs filled: the same and the stations and the length.
std::vector<std::string_view> fieldsNeededToRepeat(const Route& route, const Form& form);

/// Whether none of the fields is empty.
bool allFilled(const Form& form, std::span<const std::string_view> fields);

} // namespace varda::inline core
