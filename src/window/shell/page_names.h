#pragma once

#include "core/link/routes.h"

#include <span>
#include <string_view>

namespace varda::window {

/// The controls of a master page that somebody else than the page itself speaks to.
struct PageNames {
    Mode bitMode; ///< tells the page, as in its Route
    std::string_view periodField;
    std::string_view sendButton;
    std::string_view enabledByOpening; ///< the send button that opening the port enables
    std::string_view answer;           ///< shows the answer
    std::string_view completionStatus; ///< told answeredStatus
    std::string_view silenceStatus;    ///< told "No Answer From PLC"
};

/// What a page's status says of an answer that came.
inline constexpr const char* answeredStatus = "Data Receive OK !!";

/// Shows the answers of a run of a scenario.
inline constexpr std::string_view scenarioAnswer = "txtScnReceive";

/// The four master pages, in the order of their mode options.
std::span<const PageNames> pageNames();

/// The page of a mode, nullptr for a run.
const PageNames* findPageNames(Mode mode);

} // namespace varda::window
