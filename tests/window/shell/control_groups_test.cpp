#include "window/shell/control_groups.h"

#include <gtest/gtest.h>

#include <array>
#include <initializer_list>

namespace varda {

using namespace window;
namespace {

constexpr std::array<ControlGroup, 6> allGroups = {ControlGroup::Read,       ControlGroup::Write,
                                                   ControlGroup::MixedRead,  ControlGroup::MixedWrite,
                                                   ControlGroup::Simulation, ControlGroup::Scenario};

void expectSwitched(ControlGroup group, std::initializer_list<const char*> names) {
    for (const char* name : names) {
        EXPECT_TRUE(isInGroup(group, name)) << name;
    }
}

void expectLeft(ControlGroup group, std::initializer_list<const char*> names) {
    for (const char* name : names) {
        EXPECT_FALSE(isInGroup(group, name)) << name;
    }
}

void expectPrefixes(ControlGroup group, std::initializer_list<NamePrefix> expected) {
    const auto prefixes = namePrefixes(group);
    ASSERT_EQ(prefixes.size(), expected.size());
    auto actual = prefixes.begin();
    for (const NamePrefix& prefix : expected) {
        EXPECT_EQ(actual->prefix, prefix.prefix);
        EXPECT_EQ(actual->compared, prefix.compared) << prefix.prefix;
        ++actual;
    }
}

TEST(ControlGroups, ReadGroupSwitchesItsListsTextsAndOptions) {
    expectSwitched(ControlGroup::Read, {"cbRegister", "cbRegAddress", "cbRegBit", "cbRLength", "txtRDDA",
                                        "txtRDSA", "txtRStatus", "optRead_0", "optRead_1"});
}

TEST(ControlGroups, ReadGroupSwitchesTheReceiveFieldsOfAllPages) {
    expectSwitched(ControlGroup::Read,
                   {"txtReceiveRData", "txtReceiveWData", "txtReceiveMRData", "txtReceiveMWData"});
    expectSwitched(ControlGroup::Read, {"txtReadTimerValue"});
}

TEST(ControlGroups, ReadGroupLeavesOtherControls) {
    expectLeft(ControlGroup::Read, {"cmdRDSend", "txtSendRData", "cbWRegister", "cbMRegister", "optMRead_0",
                                    "txtMRDDA", "txtMReadTimerValue", "lblBitPoint", "Frame2_0", ""});
}

TEST(ControlGroups, ReadCheckBoxesAreNeverSwitched) {
    for (const ControlGroup group : allGroups) {
        expectLeft(group, {"chkRTimer", "chkRandomWrite", "chk", "chkR"});
    }
}

TEST(ControlGroups, WriteGroupSwitchesItsListsTextsAndOptions) {
    expectSwitched(ControlGroup::Write,
                   {"cbWRegister", "cbWRegAddress", "cbWRegBit", "cbWLength", "txtWDDA", "txtWDSA",
                    "txtWStatus", "txtWriteTimerValue", "optWrite_0", "optWrite_1"});
}

TEST(ControlGroups, WriteGroupSwitchesTheWatchDogField) {
    expectSwitched(ControlGroup::Write, {"txtWatchDog"});
}

TEST(ControlGroups, WriteGroupLeavesOtherControls) {
    expectLeft(ControlGroup::Write, {"cmdWDSend", "txtSendWData", "txtReceiveWData", "cbMWRegister",
                                     "optMWrite_0", "txtMWData", "txtMWriteTimerValue", "cbRLength"});
}

TEST(ControlGroups, WriteCheckBoxesAndTheGridAreNeverSwitched) {
    for (const ControlGroup group : allGroups) {
        expectLeft(group, {"chkWTimer", "chkCounter", "chkWW", "gridWriteData", "gridW", "grid"});
    }
}

TEST(ControlGroups, MixedReadGroupSwitchesNothing) {
    expectLeft(ControlGroup::MixedRead, {"cbMRegister",
                                         "cbMRegAddress",
                                         "cbMRegBit",
                                         "cbMRLength",
                                         "txtMRDDA",
                                         "txtMRDSA",
                                         "txtMReadTimerValue",
                                         "txtMRStatus",
                                         "chkMRTimer",
                                         "optMRead_0",
                                         "optMRead_1",
                                         "cmdMRAdd",
                                         "cmdMRDSend",
                                         "lstMRReadReg",
                                         "cbMR",
                                         "txtMR",
                                         "optMR",
                                         "cbM",
                                         "txtM",
                                         "optM",
                                         "chk"});
}

TEST(ControlGroups, MixedWriteGroupSwitchesNothing) {
    expectLeft(ControlGroup::MixedWrite,
               {"cbMWRegister", "cbMWRegAddress", "cbMWRegBit", "txtMWDDA", "txtMWDSA", "txtMWData",
                "txtMWriteTimerValue", "txtMWStatus", "chkMWTimer", "optMWrite_0", "optMWBData_0",
                "cmdMWDSend", "lstMWWriteReg", "gridMW", "cbMW", "txtMW", "optMW", "gridM", "grid"});
}

TEST(ControlGroups, MixedFieldsAreSwitchedByNoGroup) {
    for (const ControlGroup group : allGroups) {
        expectLeft(group,
                   {"cbMRegister", "txtMRDDA", "optMRead_0", "cbMWRegister", "txtMWData", "chkHexDec"});
    }
}

TEST(ControlGroups, SimulationGroupSwitchesAllFivePrefixes) {
    expectSwitched(ControlGroup::Simulation,
                   {"cbSimMode", "cbSimModeS", "cbSimDA", "cbSimSA", "txtSimStatus", "chkSimAny",
                    "optSimMixed", "cmdSimInputOK", "cmdSimDelete", "cmdSimClear", "cmdSimStart"});
}

TEST(ControlGroups, SimulationGroupLeavesOtherControls) {
    expectLeft(ControlGroup::Simulation, {"lstSimReceive", "lstSimSend", "cmdSaveSimPacket", "cbS", "cbSi",
                                          "txtSi", "cmdSaveScenario"});
}

TEST(ControlGroups, ScenarioGroupSwitchesItsFourEditingButtons) {
    expectSwitched(ControlGroup::Scenario,
                   {"cmdAddScenario", "cmdDelScenario", "cmdLoadScenario", "cmdSaveScenario"});
    expectLeft(ControlGroup::Scenario, {"cmdAdd", "cmdScenario", "lstSchedule", "txtScnPeriod", "cmdRDSend"});
}

TEST(ControlGroups, ScenarioStartAndStopFollowTheirOwnRule) {
    expectLeft(ControlGroup::Scenario, {"cmdRunScenario", "cmdStopScenario"});
}

TEST(ControlGroups, GroupThatIsNoneSwitchesNothing) {
    expectLeft(static_cast<ControlGroup>(6), {"cbRegister", "cmdAddScenario", ""});
}

TEST(ControlGroups, ComparisonIsCaseSensitive) {
    expectLeft(ControlGroup::Read, {"CBRegister", "cbregister", "TxtRDDA"});
    expectLeft(ControlGroup::Simulation, {"cbsimMode"});
}

TEST(ControlGroups, NumbersOfComparedCharactersAreThoseOfTheDesign) {
    expectPrefixes(ControlGroup::Read, {{"cbR", 3}, {"txtR", 4}, {"chkR", 3}, {"optR", 4}});
    expectPrefixes(ControlGroup::Write, {{"cbW", 3}, {"txtW", 4}, {"chkW", 3}, {"optW", 4}, {"gridW", 4}});
    expectPrefixes(ControlGroup::MixedRead, {{"cbMR", 3}, {"txtMR", 4}, {"chkMR", 3}, {"optMR", 4}});
    expectPrefixes(ControlGroup::MixedWrite,
                   {{"cbMW", 3}, {"txtMW", 4}, {"chkMW", 3}, {"optMW", 4}, {"gridMW", 4}});
    expectPrefixes(ControlGroup::Simulation,
                   {{"cbSim", 5}, {"txtSim", 6}, {"chkSim", 6}, {"optSim", 6}, {"cmdSim", 6}});
}

} // namespace
} // namespace varda
