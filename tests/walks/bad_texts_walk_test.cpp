#include "walks/walk_window.h"

#include <gtest/gtest.h>

#include <iostream>

namespace varda::walks {

namespace {

/// A page's fields as this test uses them, with texts that are right.
struct BadTextPage {
    int mode;
    std::vector<Action> right;       ///< fills every field
    std::vector<std::string> fields; ///< where bad texts go
    std::vector<Action> touches;     ///< what is done while a bad text stands
    std::vector<std::string> options;
    std::string send;
    std::string list; ///< its point list, and the button that takes a line off it; empty where there is none
    std::string remove;
};

const std::vector<std::string> badTexts = {"x", "40000", "-1", "99999999999", "&H", "1e5", "2000", ""};

BadTextPage readPage() {
    return {
        0,
        {{"choose", "cbRegister", "M"},
         {"choose", "cbRegAddress", "0003"},
         {"choose", "cbRegBit", "5"},
         {"choose", "cbRLength", "9"},
         {"put", "txtRDDA", "17"},
         {"put", "txtRDSA", "18"},
         {"put", "txtReadTimerValue", "500"}},
        {"cbRegister", "cbRegAddress", "cbRegBit", "cbRLength", "txtRDDA", "txtRDSA", "txtReadTimerValue"},
        {{"enter", "cbRegister", ""}, {"tick", "", ""}, {"click", "chkRTimer", ""}},
        {"optRead_0", "optRead_1"},
        "cmdRDSend",
        "",
        ""};
}

BadTextPage writePage() {
    return {1,
            {{"choose", "cbWRegister", "M"},
             {"choose", "cbWRegAddress", "0003"},
             {"choose", "cbWRegBit", "5"},
             {"choose", "cbWLength", "9"},
             {"put", "txtWDDA", "17"},
             {"put", "txtWDSA", "18"},
             {"put", "txtWriteTimerValue", "500"}},
            {"cbWRegister", "cbWRegAddress", "cbWRegBit", "cbWLength", "txtWDDA", "txtWDSA",
             "txtWriteTimerValue"},
            {{"enter", "cbWRegister", ""},
             {"tick", "", ""},
             {"click", "chkWTimer", ""},
             {"click", "chkRandomWrite", ""},
             {"click", "chkCounter", ""},
             {"cell", "gridWriteData", "0,6"},
             {"cell", "gridWriteData", "0,0"}},
            {"optWrite_0", "optWrite_1"},
            "cmdWDSend",
            "",
            ""};
}

BadTextPage mixedReadPage() {
    return {
        2,
        {{"choose", "cbMRegister", "M"},
         {"choose", "cbMRegAddress", "0003"},
         {"choose", "cbMRegBit", "5"},
         {"choose", "cbMRLength", "9"},
         {"put", "txtMRDDA", "17"},
         {"put", "txtMRDSA", "18"},
         {"put", "txtMReadTimerValue", "500"}},
        {"cbMRegister", "cbMRegAddress", "cbMRegBit", "cbMRLength", "txtMRDDA", "txtMRDSA",
         "txtMReadTimerValue"},
        {{"click", "cmdMRAdd", ""}, {"tick", "", ""}, {"click", "chkMRTimer", ""}, {"click", "cmdMRDel", ""}},
        {"optMRead_0", "optMRead_1"},
        "cmdMRDSend",
        "lstMRReadReg",
        "cmdMRDel"};
}

BadTextPage mixedWritePage() {
    return {3,
            {{"choose", "cbMWRegister", "M"},
             {"choose", "cbMWRegAddress", "0003"},
             {"choose", "cbMWRegBit", "5"},
             {"put", "txtMWData", "12"},
             {"put", "txtMWDDA", "17"},
             {"put", "txtMWDSA", "18"},
             {"put", "txtMWriteTimerValue", "500"}},
            {"cbMWRegister", "cbMWRegAddress", "cbMWRegBit", "txtMWData", "txtMWDDA", "txtMWDSA",
             "txtMWriteTimerValue"},
            {{"click", "cmdMWAdd", ""},
             {"tick", "", ""},
             {"click", "chkMWTimer", ""},
             {"click", "chkHexDec", ""},
             {"click", "cmdMWDel", ""}},
            {"optMWrite_0", "optMWrite_1"},
            "cmdMWDSend",
            "lstMWWriteReg",
            "cmdMWDel"};
}

/// One page under bad texts.
class BadTextWalk {
public:
    explicit BadTextWalk(BadTextPage page) : page_(std::move(page)), window_(page_.mode, 1) {
        take({"click", "cmdCommTest", ""});
        take({"click", "cmdPortOpen", ""});
    }

    void walk() {
        for (const std::string& option : page_.options) {
            take({"click", option, ""});
            fill();
            for (const std::string& field : page_.fields) {
                for (const std::string& text : badTexts) {
                    walk(field, text);
                }
            }
        }
        std::cout << frames_ << " frames\n";
    }

private:
    void walk(const std::string& field, const std::string& text) {
        if (window_.shown(field + ".visible") == "no") {
            return;
        }
        std::vector<Action> steps = page_.right; // "every field anew" and what else can be done meanwhile
        steps.insert(steps.end(), page_.touches.begin(), page_.touches.end());
        for (const Action& step : steps) {
            take({text.empty() ? "clear" : "put", field, text});
            take({"click", page_.send, ""});
            take(step);
            take({"click", page_.send, ""});
            const std::size_t before = frames_;
            fill(); // right again, which the next round begins with
            take({"click", page_.send, ""});
            ASSERT_GT(frames_, before) << "nothing was sent after the texts were right again\n" << actions_;
            if (testing::Test::HasFailure()) {
                return;
            }
            actions_.clear();
        }
    }

    void fill() {
        while (!page_.list.empty() && !window_.shown(page_.list + ".items").empty()) {
            take({"line", page_.list, "0"});
            take({"click", page_.remove, ""});
        }
        for (const Action& action : page_.right) {
            take(action);
        }
    }

    void take(const Action& action) {
        if (action.verb != "line" && !action.control.empty() && action.verb != "cell" &&
            (window_.shown(action.control + ".enabled") == "no" ||
             window_.shown(action.control + ".visible") == "no")) {
            return;
        }
        if (action.verb == "cell" &&
            std::stoi(action.text) >= std::stoi(window_.shown("gridWriteData.rows"))) {
            return;
        }
        if (action.verb == "choose" &&
            ("|" + window_.shown(action.control + ".items")).find("|" + action.text + "|") ==
                std::string::npos) {
            return;
        }
        actions_ += printed(action);
        window_.perform(action);
        if (window_.shown("frmWriteWord") == "yes") {
            window_.perform({"wordend", "", "Escape"});
        }
        for (const Octets& frame : window_.takeSent()) {
            ++frames_;
            EXPECT_TRUE(hasRightCrc(frame)) << actions_;
        }
        window_.takeBoxes();
    }

    BadTextPage page_;
    WalkWindow window_;
    std::string actions_;
    std::size_t frames_ = 0;
};

} // namespace

TEST(BadTextsWalk, NoTextOfTheReadPageSpoilsTheNextFrame) { BadTextWalk(readPage()).walk(); }
TEST(BadTextsWalk, NoTextOfTheWritePageSpoilsTheNextFrame) { BadTextWalk(writePage()).walk(); }
TEST(BadTextsWalk, NoTextOfTheMixedReadPageSpoilsTheNextFrame) { BadTextWalk(mixedReadPage()).walk(); }
TEST(BadTextsWalk, NoTextOfTheMixedWritePageSpoilsTheNextFrame) { BadTextWalk(mixedWritePage()).walk(); }

} // namespace varda::walks
