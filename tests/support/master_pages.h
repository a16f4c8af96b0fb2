#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

namespace varda::test {

/// What the link must do with each master page, written down a second time: the tests compare against this,
/// never against the table of the program.
struct MasterPage {
    std::string name;
    std::int16_t bitMode;
    std::int16_t wordMode;
    std::string bitOption;
    std::string wordOption;
    std::vector<std::string> stations;
    std::string length; ///< empty where the page has none
    std::string kind;
    std::string number;
    std::string bit;
    std::string sendButton;
    std::string enabledByOpening;
    std::string continuousBox;
    std::string periodField;
    bool repeatsOnlyWhenAnswered;
    std::string status;
    std::string answer;
    std::string completionStatus;
    std::string silenceStatus;

    std::vector<std::string> neededToSend(bool bitOptionChosen) const {
        std::vector<std::string> fields{kind, number};
        if (bitOptionChosen) {
            fields.push_back(bit);
        }
        return fields;
    }
    std::vector<std::string> neededToRepeat(bool bitOptionChosen) const {
        auto fields = neededToSend(bitOptionChosen);
        fields.insert(fields.end(), stations.begin(), stations.end());
        if (!length.empty()) {
            fields.push_back(length);
        }
        return fields;
    }
};

inline std::ostream& operator<<(std::ostream& out, const MasterPage& page) { return out << page.name; }

// NOLINTNEXTLINE(readability-function-size): one table
inline std::vector<MasterPage> masterPages() {
    return {
        {"Read",
         0x21,
         0x23,
         "optRead_0",
         "optRead_1",
         {"txtRDDA", "txtRDSA"},
         "cbRLength",
         "cbRegister",
         "cbRegAddress",
         "cbRegBit",
         "cmdRDSend",
         "cmdRDSend",
         "chkRTimer",
         "txtReadTimerValue",
         false,
         "txtRStatus",
         "txtReceiveRData",
         "txtRStatus",
         "txtRStatus"},
        {"Write",
         0x22,
         0x24,
         "optWrite_0",
         "optWrite_1",
         {"txtWDDA", "txtWDSA"},
         "cbWLength",
         "cbWRegister",
         "cbWRegAddress",
         "cbWRegBit",
         "cmdWDSend",
         "cmdWDSend",
         "chkWTimer",
         "txtWriteTimerValue",
         true,
         "txtWStatus",
         "txtReceiveWData",
         "txtWStatus",
         "txtWStatus"},
        {"MixedRead",
         0x25,
         0x25,
         "optMRead_0",
         "optMRead_1",
         {"txtMRDDA", "txtMRDSA"},
         "cbMRLength",
         "cbMRegister",
         "cbMRegAddress",
         "cbMRegBit",
         "cmdMRDSend",
         "cmdRDSend",
         "chkMRTimer",
         "txtMReadTimerValue",
         false,
         "txtMRStatus",
         "txtReceiveMRData",
         "txtWStatus",
         "txtMRStatus"},
        {"MixedWrite",
         0x26,
         0x26,
         "optMWrite_0",
         "optMWrite_1",
         {"txtMWDDA", "txtMWDSA"},
         "",
         "cbMWRegister",
         "cbMWRegAddress",
         "cbMWRegBit",
         "cmdMWDSend",
         "cmdMWDSend",
         "chkMWTimer",
         "txtMWriteTimerValue",
         true,
         "txtMWStatus",
         "txtReceiveMWData",
         "txtWStatus",
         "txtWStatus"},
    };
}

/// Names a parameterized test after its page.
struct PageName {
    template <typename Info>
    std::string operator()(const Info& info) const {
        return info.param.name;
    }
};

} // namespace varda::test
