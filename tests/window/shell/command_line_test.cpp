#include "window/shell/command_line.h"

#include "support/temporary_folder.h"

#include <gtest/gtest.h>

namespace varda::test {

using namespace window;
namespace {

CommandLine read(const std::vector<std::string>& arguments) {
    const auto result = readCommandLine(arguments);
    const auto* const answer = std::get_if<CommandLineAnswer>(&result);
    EXPECT_EQ(answer, nullptr) << answer->text;
    return answer == nullptr ? std::get<CommandLine>(result) : CommandLine();
}

/// What is said to arguments that are not understood.
std::string refusal(const std::vector<std::string>& arguments) {
    const auto result = readCommandLine(arguments);
    const auto* const answer = std::get_if<CommandLineAnswer>(&result);
    if (answer == nullptr) {
        ADD_FAILURE() << "understood: " << arguments.front();
        return {};
    }
    EXPECT_EQ(answer->exitCode, 2) << answer->text;
    return answer->text;
}

TEST(CommandLine, WithoutArgumentsWishesNothing) {
    const CommandLine line = read({});
    EXPECT_FALSE(line.port || line.baudRate || line.dataBits || line.stopBits || line.parity);
    EXPECT_FALSE(line.open || line.mode || line.packets || line.scenario);
    EXPECT_TRUE(line.files.empty());
}

TEST(CommandLine, NamesThePortItsSettingsAndWhetherToOpenIt) {
    const CommandLine line = read({"--port", "/dev/ttyUSB0", "--baud", "57600", "--data", "7", "--stop", "2",
                                   "--parity", "even", "--open"});
    EXPECT_EQ(line.port, "/dev/ttyUSB0");
    EXPECT_EQ(line.baudRate, "57600");
    EXPECT_EQ(line.dataBits, "7");
    EXPECT_EQ(line.stopBits, "2");
    EXPECT_EQ(line.parity, "EVEN");
    EXPECT_TRUE(line.open);
}

TEST(CommandLine, TakesTheParityByItsNameOrItsLetter) {
    for (const auto& [typed, text] :
         {std::pair("N", "NONE"), std::pair("none", "NONE"), std::pair("e", "EVEN"),
          std::pair("Even", "EVEN"), std::pair("o", "ODD"), std::pair("ODD", "ODD")}) {
        EXPECT_EQ(read({"--parity", typed}).parity, text) << typed;
    }
}

TEST(CommandLine, NamesTheModesInTheOrderOfTheirOptions) {
    int index = 0;
    for (const char* const mode :
         {"read", "write", "mixed-read", "mixed-write", "simulation", "monitoring"}) {
        EXPECT_EQ(read({std::string("--mode=") + mode}).mode, index++) << mode;
    }
}

TEST(CommandLine, NamesFilesWithAndWithoutAnOption) {
    const TemporaryFolder folder;
    const std::string packets = folder.file(notAscii);
    const std::string scenario = folder.file("a scenario.scn");
    writeBytes(packets, "");
    writeBytes(scenario, "");
    const CommandLine line = read({"--packets", packets, "--scenario", scenario, packets, scenario});
    EXPECT_EQ(line.packets, packets);
    EXPECT_EQ(line.scenario, scenario);
    EXPECT_EQ(line.files, (std::vector<std::string>{packets, scenario}));
}

TEST(CommandLine, IsRefusedWithAReasonWhereItIsNotUnderstood) {
    EXPECT_NE(refusal({"--speed"}).find("--speed"), std::string::npos);
    EXPECT_NE(refusal({"--baud", "fast"}).find("--baud"), std::string::npos);
    EXPECT_NE(refusal({"--baud", "0"}).find("--baud"), std::string::npos);
    EXPECT_NE(refusal({"--data", "9"}).find("--data"), std::string::npos);
    EXPECT_NE(refusal({"--stop", "3"}).find("--stop"), std::string::npos);
    EXPECT_NE(refusal({"--parity", "mark"}).find("--parity"), std::string::npos);
    EXPECT_NE(refusal({"--mode", "listen"}).find("monitoring"), std::string::npos);
    EXPECT_NE(refusal({"--packets", "/no/such/file.ini"}).find("/no/such/file.ini"), std::string::npos);
    EXPECT_NE(refusal({"/no/such/file.ini"}).find("/no/such/file.ini"), std::string::npos);
    EXPECT_NE(refusal({"--port"}).find("--port"), std::string::npos);
}

TEST(CommandLine, AnswersHelpAndVersionAtOnceWhateverElseItSays) {
    const auto help = answerAtOnce({"--style", "fusion", "--help"});
    ASSERT_TRUE(help);
    EXPECT_EQ(help->exitCode, 0);
    for (const char* const option : {"--port", "--baud", "--data", "--stop", "--parity", "--open", "--mode",
                                     "--packets", "--scenario", "--help", "--version"}) {
        EXPECT_NE(help->text.find(option), std::string::npos) << option;
    }
    const auto version = answerAtOnce({"--version"});
    ASSERT_TRUE(version);
    EXPECT_EQ(version->text, "varda " VARDA_VERSION "\n");
    EXPECT_EQ(version->exitCode, 0);
}

TEST(CommandLine, AnswersNothingAtOnceWhereNobodyAsks) {
    EXPECT_FALSE(answerAtOnce({}));
    EXPECT_FALSE(answerAtOnce({"--port", "VIRTUAL"}));
    EXPECT_FALSE(answerAtOnce({"--", "--help"}));
}

} // namespace
} // namespace varda::test
