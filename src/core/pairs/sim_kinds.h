#pragma once

#include "core/pairs/packet_builders.h"
#include "core/pairs/sim_points.h"
#include "core/protocol/registers.h"

#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace varda::inline core {

/// One of the four request kinds that the simulation page prepares.
struct SimKind {
    std::string_view mode;       ///< text of the kind that it is offered by
    std::string_view answerMode; ///< text of its answer's kind
    Access access;
    bool isWrite;                 ///< its points are collected one by one, its answer is an acknowledgement
    std::string_view checkedData; ///< what CheckSimSendData is asked for
    SimPointForm point;
    std::string (*makeRequest)(const SimFields& fields);
    std::string (*makeAnswer)(const SimFields& fields);
};

inline constexpr std::array<SimKind, 4> simKinds = {{
    {"Bit Read", "Bit Read ANS", Access::Bit, false, "BIT_READ", SimPointForm::BitRead, MakeSimBitReadFormat,
     MakeSimBitReadAnsFormat},
    {"Word Read", "Word Read ANS", Access::Word, false, "WORD_READ", SimPointForm::WordRead,
     MakeSimWordReadFormat, MakeSimWordReadAnsFormat},
    {"Bit Write", "Bit Write ANS", Access::Bit, true, "BIT_WRITE", SimPointForm::BitWrite,
     MakeSimBitWriteFormat, MakeSimBitWriteAnsFormat},
    {"Word Write", "Word Write ANS", Access::Word, true, "WORD_WRITE", SimPointForm::WordWrite,
     MakeSimWordWriteFormat, MakeSimWordWriteAnsFormat},
}};

/// The two kinds that the page offers but does not prepare.
constexpr std::string_view mixedReadMode = "Mixed Read";
constexpr std::string_view mixedWriteMode = "Mixed Write";

/// The entries of the page's lists: requests, their answers, stations 0 .. 255.
std::vector<std::string> simModeTexts();
std::vector<std::string> simAnswerModeTexts();
std::vector<std::string> simStationTexts();
/// The kinds of an access; other than on the master pages without an empty last entry.
std::vector<std::string> simRegisterTexts(Access access);

/// The kind of a mode's text, or nullptr.
const SimKind* findSimKind(std::string_view mode);
/// The kind of an answer mode's text, or nullptr.
const SimKind* findSimAnswerKind(std::string_view answerMode);

} // namespace varda::core
