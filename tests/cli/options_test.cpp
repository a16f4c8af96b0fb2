#include "cli/program_fixture.h"

#include "cli/port_choice.h"
#include "cli/report.h"
#include "device/serial_node.h"

#include <regex>

#ifndef _WIN32
#include <termios.h>
#endif

namespace varda::test {
namespace {

using namespace std::chrono_literals;

class OptionsTest : public ProgramTest {
protected:
    /// The request that reaches the far end, which answers nothing.
    std::vector<std::uint8_t> requestOf(std::vector<std::string> arguments, std::size_t length) {
        arguments.insert(arguments.begin() + 1, {"-p", line.path(), "--period", "100"});
        std::vector<std::uint8_t> request;
        std::thread farEnd([&] { request = line.read(length, 5s); });
        EXPECT_EQ(run(arguments), 1) << "nothing answers";
        farEnd.join();
        return request;
    }

    static std::string settingsOf(const std::vector<std::string>& options) {
        CLI::App app;
        cli::PortChoice choice;
        choice.declare(app);
        std::vector<std::string> arguments = options;
        arguments.insert(arguments.end(), {"-p", "VIRTUAL"});
        std::ranges::reverse(arguments); // as this parser wants them
        app.parse(arguments);
        return choice.settings();
    }

    std::string heardWith(const std::vector<std::string>& options) {
        std::vector<std::string> arguments = {"monitor", "-p", line.path()};
        arguments.insert(arguments.end(), options.begin(), options.end());
        EXPECT_EQ(runUntilEnded(arguments,
                                [this] {
                                    line.write({'O', 'K'});
                                    out.waitForMore();
                                }),
                  0);
        return out.text();
    }
};

TEST_F(OptionsTest, StationsStandInTheRequest) {
    const std::vector<std::vector<std::string>> requests = {
        {"read", "W 0100"}, {"write", "W 0100=7"}, {"mixed-read", "W 0100"}, {"mixed-write", "W 0100=7"}};
    for (std::vector<std::string> arguments : requests) {
        const std::string name = arguments.front();
        arguments.insert(arguments.end(), {"--destination", "5", "--source", "17"});
        const auto request = requestOf(arguments, 9);
        ASSERT_GE(request.size(), 2U) << name;
        EXPECT_EQ(request[0], 5) << name;
        EXPECT_EQ(request[1], 17) << name;
    }
}

TEST_F(OptionsTest, StationsAreThoseOfTheHelpIfNotGiven) {
    const auto request = requestOf({"read", "W 0100"}, 9);
    ASSERT_GE(request.size(), 2U);
    EXPECT_EQ(request[0], 255);
    EXPECT_EQ(request[1], 0);
}

TEST_F(OptionsTest, OutOfTheirRangesAreRefused) {
    const std::vector<std::vector<std::string>> refused = {
        {"--destination", "256"}, {"--source", "-1"}, {"--source", "x"},        {"--period", "0"},
        {"--baud", "0"},          {"--data", "9"},    {"--data", "4"},          {"--stop", "3"},
        {"--parity", "mark"},     {"--parity", ""},   {"--baud", "99999999999"}};
    EXPECT_EQ(run({"run", "-p", "VIRTUAL", "--period", "0", scenarioFile()}), 2) << "it would never end";
    EXPECT_EQ(run({"read", "-p", "VIRTUAL", "--seed", "1", "W 0"}), 2) << "of no fault";
    for (const auto& option : refused) {
        std::vector<std::string> arguments = {"read", "-p", "VIRTUAL", "W 0"};
        arguments.insert(arguments.end(), option.begin(), option.end());
        EXPECT_EQ(run(arguments), 2) << option.front() << ' ' << option.back();
        EXPECT_NE(error.text().find(option.front()), std::string::npos) << error.text();
    }
}

TEST_F(OptionsTest, OfTheLineAreItsSettings) {
    EXPECT_EQ(settingsOf({}), "9600,n,8,1");
    EXPECT_EQ(settingsOf({"--baud", "19200", "--data", "7", "--stop", "2", "--parity", "even"}),
              "19200,e,7,2");
    EXPECT_EQ(settingsOf({"--data", "5", "--parity", "odd"}), "9600,o,5,1");
}

#ifndef _WIN32
TEST_F(OptionsTest, OfTheLineReachItsDriver) {
    requestOf({"read", "W 0100", "--baud", "4800", "--stop", "2", "--parity", "odd"}, 9);
    termios held{};
    ASSERT_EQ(::tcgetattr(line.nearEnd(), &held), 0);
    EXPECT_EQ(::cfgetospeed(&held), speed_t{B4800});
    EXPECT_NE(held.c_cflag & CSTOPB, 0U);
    EXPECT_NE(held.c_cflag & PARODD, 0U);
}
#endif

TEST_F(OptionsTest, HelpNamesThePortsOfThisSystem) {
    EXPECT_EQ(run({"read", "--help"}), 0);
    std::string help = std::regex_replace(out.text(), std::regex("\\s+"), " ");
    EXPECT_NE(help.find(device::portNamesInWords()), std::string::npos) << help;
}

TEST_F(OptionsTest, OfTheMonitorPutTheTimeBeforeALine) {
    EXPECT_EQ(heardWith({}), "4F 4B \n");
    EXPECT_TRUE(std::regex_match(heardWith({"--time"}), std::regex("\\d+:\\d+:\\d+ - 4F 4B \n")))
        << out.text();
}

TEST_F(OptionsTest, OfTheMonitorShowBytesAsCharacters) {
    EXPECT_EQ(heardWith({"--characters"}), "O K \n");
    EXPECT_TRUE(
        std::regex_match(heardWith({"--characters", "--time"}), std::regex("\\d+:\\d+:\\d+ - O K \n")))
        << out.text();
    EXPECT_EQ(heardWith({"--characters", "--json"}), "{\"type\":\"heard\",\"bytes\":\"4F4B\"}\n")
        << "machines get the bytes";
}

TEST_F(OptionsTest, ARequestNamesTheRegistersOfItsAnswer) {
    const std::string answer = "00FFA3080000000000000000C658";
    EXPECT_EQ(run({"decode", answer}), 0);
    EXPECT_EQ(out.text().find("W 0100"), std::string::npos) << out.text();
    EXPECT_EQ(run({"decode", "--request", "FF00230364020490F0", answer}), 0);
    EXPECT_NE(out.text().find("W 0100 = 0000h = 0"), std::string::npos) << out.text();
    EXPECT_NE(out.text().find("W 0103 = 0000h = 0"), std::string::npos) << out.text();
    EXPECT_EQ(run({"decode", "--request", "FF0", answer}), 2);
    EXPECT_NE(error.text().find("\"FF0\" is no frame"), std::string::npos) << error.text();
}

/// Whatever ports this computer has.
TEST_F(OptionsTest, PortsAreListed) {
    EXPECT_EQ(run({"ports", "--json"}), 0);
    const std::size_t count = objects().size();
    EXPECT_EQ(error.text().empty(), count > 0) << error.text();
    for (const Json& port : objects()) {
        EXPECT_EQ(port["type"], "port");
        EXPECT_NE(port["name"], "");
    }
    EXPECT_EQ(run({"ports"}), 0);
    EXPECT_EQ(static_cast<std::size_t>(std::ranges::count(out.text(), '\n')), count);
    EXPECT_EQ(run({"ports", "--doctor", "--json"}), 0);
    EXPECT_EQ(objects().size(), count);
    for (const Json& port : objects()) {
        EXPECT_TRUE(port["facts"].is_array());
    }
    EXPECT_EQ(run({"ports", "--doctor"}), 0);
    EXPECT_EQ(out.text().empty(), count == 0);
}

class PortsReport : public testing::Test {
protected:
    const device::PortName port = {.node = "/dev/ttyUSB0",
                                   .description = "USB Serial",
                                   .serialNumber = "A10K",
                                   .maker = "Maker",
                                   .stableName = "/dev/serial/by-id/usb-Maker",
                                   .identity = "usb"};
    std::ostringstream out;
};

TEST_F(PortsReport, TellsAllOfAPort) {
    cli::Report(out, false).port(port);
    EXPECT_EQ(out.str(), "/dev/ttyUSB0 - USB Serial, Maker (serial number A10K)\n");
    out.str({});
    cli::Report(out, true).port(port);
    EXPECT_EQ(Json::parse(out.str()),
              Json::parse(R"({"type": "port", "name": "/dev/ttyUSB0", "description": "USB Serial",
                              "maker": "Maker", "serialNumber": "A10K",
                              "stableName": "/dev/serial/by-id/usb-Maker"})"));
}

TEST_F(PortsReport, TellsWhatTheDoctorFinds) {
    const device::PortFindings findings = {port, {"Nobody has it."}, {{"stty -F x", "Its settings"}}};
    cli::Report(out, false).port(findings);
    EXPECT_EQ(out.str(), "/dev/ttyUSB0 - USB Serial, Maker (serial number A10K)\n  Nobody has it.\n"
                         "  Its settings:\n    stty -F x\n");
    out.str({});
    cli::Report(out, true).port(findings);
    const Json object = Json::parse(out.str());
    EXPECT_EQ(object["name"], "/dev/ttyUSB0");
    EXPECT_EQ(object["facts"], Json::parse(R"(["Nobody has it."])"));
    EXPECT_EQ(object["remedies"], Json::parse(R"([{"command": "stty -F x", "purpose": "Its settings"}])"));
}

} // namespace
} // namespace varda::test
