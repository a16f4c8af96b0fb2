#include "cli/program_fixture.h"
#include "core/files/append_file.h"

namespace varda::test {
namespace {

using namespace std::chrono_literals;

TEST_F(ProgramTest, ReadsFromTheEmbeddedController) {
    EXPECT_EQ(run({"read", "--port", "VIRTUAL", "W 0100 2"}), 0);
    EXPECT_NE(out.text().find("W 0100 = 0000h = 0\n"), std::string::npos);
    EXPECT_NE(out.text().find("W 0101 = 0000h = 0\n"), std::string::npos);
    EXPECT_EQ(error.text(), "");
}

TEST_F(ProgramTest, WritesJsonForMachines) {
    EXPECT_EQ(run({"--json", "read", "-p", "VIRTUAL", "W 0100", "R 0012.3"}), 0);
    const auto read = objects();
    ASSERT_EQ(read.size(), 2U);
    EXPECT_EQ(read[0]["type"], "exchange");
    EXPECT_EQ(read[0]["outcome"], "answered");
    EXPECT_EQ(read[0]["expected"], 8);
    EXPECT_EQ(read[0]["values"], Json::parse(R"([{"register": "W 0100", "value": 0}])"));
    EXPECT_EQ(read[1]["values"], Json::parse(R"([{"register": "R 0012.3", "value": false}])"));
}

TEST_F(ProgramTest, WritesAndReadsMixedPoints) {
    EXPECT_EQ(run({"write", "-p", "VIRTUAL", "W 0100=1A2Bh,7", "M 0000.0=ON"}), 0);
    EXPECT_EQ(run({"mixed-write", "-p", "VIRTUAL", "W 0100=1A2Bh", "M 0000.0=ON"}), 0);
    EXPECT_EQ(run({"mixed-read", "-p", "VIRTUAL", "--json", "R 0012.3 W 0100 2"}), 0);
    EXPECT_EQ(objects().at(0)["values"].size(), 3U);
}

TEST_F(ProgramTest, TellsThatNothingCame) {
    EXPECT_EQ(run({"read", "-p", line.path(), "--period", "100", "W 0100"}), 1);
    EXPECT_NE(out.text().find("silent"), std::string::npos);
}

TEST_F(ProgramTest, TellsAnAnswerOfAnotherLengthAndOneWithAFlaw) {
    const auto answerWith = [this](const std::vector<std::uint8_t>& answer) {
        std::thread farEnd([&] {
            line.read(9, 5s);
            line.write(answer);
        });
        const int code = run({"read", "-p", line.path(), "--json", "W 0100"});
        farEnd.join();
        return code;
    };
    EXPECT_EQ(answerWith({1, 2, 3}), 1);
    EXPECT_EQ(objects().at(0)["outcome"], "wrong length");
    EXPECT_EQ(answerWith({0x00, 0xFF, 0xA3, 2, 0x34, 0x12, 0, 0}), 1);
    EXPECT_EQ(objects().at(0)["outcome"], "answered");
    EXPECT_EQ(objects().at(0)["faults"].size(), 1U);
}

TEST_F(ProgramTest, TellsThatThePortWentAway) {
    std::thread farEnd([this] {
        line.read(9, 5s);
        line.closeFarEnd();
    });
    EXPECT_EQ(run({"read", "-p", line.path(), "W 0100"}), 3);
    farEnd.join();
    EXPECT_NE(error.text().find("went away"), std::string::npos);
}

TEST_F(ProgramTest, RefusesAPortThatIsNotThere) {
    for (const char* const subcommand : {"read", "mixed-read"}) {
        EXPECT_EQ(run({subcommand, "-p", "/dev/nothing", "W 0"}), 3);
        EXPECT_EQ(error.text(),
                  "varda-cli: No such device: /dev/nothing. Check its name, and that it is plugged in.\n");
    }
    EXPECT_EQ(run({"monitor", "-p", "/dev/nothing"}), 3);
}

TEST_F(ProgramTest, NamesTheRemedyOfACommandLineThatItDoesNotUnderstand) {
    EXPECT_EQ(run({}), 2);
    EXPECT_EQ(run({"fly"}), 2);
    EXPECT_EQ(run({"read", "W 0100"}), 2);
    EXPECT_NE(error.text().find("--port is required"), std::string::npos);
    EXPECT_EQ(run({"read", "-p", "VIRTUAL", "Q 1"}), 2);
    EXPECT_NE(error.text().find("\"Q 1\" is no register"), std::string::npos);
    EXPECT_EQ(run({"mixed-read", "-p", "VIRTUAL", "SR 0"}), 2);
    EXPECT_NE(error.text().find("SR 000"), std::string::npos);
    EXPECT_EQ(out.text(), "");
}

TEST_F(ProgramTest, HelpsAndTellsItsVersion) {
    EXPECT_EQ(run({"--help"}), 0);
    EXPECT_NE(out.text().find("mixed-write"), std::string::npos);
    EXPECT_EQ(run({"read", "--help"}), 0);
    EXPECT_NE(out.text().find("--port"), std::string::npos);
    EXPECT_EQ(run({"--version"}), 0);
    EXPECT_EQ(out.text(), "varda-cli " VARDA_VERSION "\n");
}

TEST_F(ProgramTest, MakesItsManualPageAndCompletionOfWhatIsDeclared) {
    EXPECT_EQ(run({"--print-manual-page"}), 0);
    for (const char* const part :
         {".SS mixed\\-read", "\\-\\-rounds", "500 if not given", ".SH EXIT STATUS"}) {
        EXPECT_NE(out.text().find(part), std::string::npos) << part;
    }
    EXPECT_EQ(run({"--print-bash-completion"}), 0);
    EXPECT_NE(out.text().find("ports read write"), std::string::npos);
    EXPECT_NE(out.text().find("monitor) words=\"--help --port"), std::string::npos);
}

TEST_F(ProgramTest, ExplainsFrames) {
    EXPECT_EQ(run({"decode", "01 00 23 03 00 02 01 2D 9A"}), 1) << "the check is wrong";
    EXPECT_NE(out.text().find("Address 0200h: W 0000"), std::string::npos);
    EXPECT_EQ(run({"--json", "decode", "-"}, "FF00230364020400\nFF0023\n"), 1);
    EXPECT_EQ(objects().size(), 2U);
    EXPECT_EQ(run({"decode", "xyz"}), 2);
}

TEST_F(ProgramTest, NothingToDoIsAUsageError) {
    for (const char* const subcommand : {"read", "write", "mixed-read", "mixed-write"}) {
        EXPECT_EQ(run({subcommand, "-p", "VIRTUAL", ""}), 2) << subcommand;
        EXPECT_EQ(out.text(), "");
    }
    EXPECT_EQ(run({"decode", " "}), 2);
    EXPECT_EQ(run({"decode", "-"}, "\n"), 0) << "a file may have an empty line";
}

TEST_F(ProgramTest, RunsAScenario) {
    const std::string path = scenarioFile();
    EXPECT_EQ(run({"--json", "run", "-p", "VIRTUAL", "--rounds", "2", "--period", "400", path}), 0);
    ASSERT_EQ(objects().size(), 5U);
    EXPECT_EQ(objects().back()["right"], 4);
    EXPECT_EQ(objects().back()["wrong"], 0);
}

TEST_F(ProgramTest, JudgesAScenarioByWhatIsExpected) {
    const std::string scenario = scenarioFile();
    const std::string right = file(
        "right.expect", "[Expect]\r\nExpect0=R 0000.3 = OFF; R 0000.7 != ON\r\n"
                        "Expect1=FF FF A3 08 .. .. .. .. .. .. .. .. .. ..\r\n[Limit]\r\nLimit1=5000\r\n");
    EXPECT_EQ(run({"run", "-p", "VIRTUAL", "--period", "400", "--expect", right, scenario}), 0) << out.text();
    const std::string wrong = file("wrong.expect", "[Expect]\r\nExpect1=W 0002 >= 10\r\n");
    const std::string results = folder.file("results.xml");
    EXPECT_EQ(run({"--json", "run", "-p", "VIRTUAL", "--period", "400", "--expect", wrong, "--junit", results,
                   scenario}),
              1);
    const auto read = objects();
    ASSERT_EQ(read.size(), 5U);
    EXPECT_EQ(read[1]["isMet"], true) << "nothing was expected of it";
    EXPECT_EQ(read[3]["why"], "W 0002 >= 10 was wanted, and it is W 0002 = 0000h = 0.");
    const std::string xml = bytesOf(results);
    EXPECT_NE(xml.find(R"(tests="2" failures="1")"), std::string::npos) << xml;
    EXPECT_NE(xml.find("10 was wanted, and it is W 0002 = 0000h = 0."), std::string::npos);
    EXPECT_EQ(run({"run", "-p", "VIRTUAL", "--expect", scenario, scenario}), 4);
    EXPECT_EQ(
        run({"run", "-p", "VIRTUAL", "--expect", file("odd.expect", "[Expect]\nExpect0=maybe\n"), scenario}),
        4);
    EXPECT_NE(error.text().find("odd.expect: \"maybe\" is no expectation"), std::string::npos);
}

/// As in the window; the lines until then are overtaken, which nobody has called wrong.
TEST_F(ProgramTest, ASilenceThatNobodyExpectsEndsTheRun) {
    std::string lines = "[Information]\r\nTotal=60\r\n[Scenario]\r\n";
    for (int count = 0; count < 60; ++count) {
        lines += "Scenario" + std::to_string(count) + "=FF FF 21 03 00 00 08 BD 85 \r\n";
    }
    const std::string scenario = file("sixty.scn", lines);
    const std::string last = file("last.expect", "[Expect]\r\nExpect59=silence\r\n");
    EXPECT_EQ(run({"--json", "run", "-p", line.path(), "--period", "300", "--expect", last, scenario}), 1);
    EXPECT_EQ(objects().back()["wrong"], 1);
    EXPECT_LT(objects().back()["right"], 58);
    EXPECT_EQ(objects().at(objects().size() - 2)["why"], "No answer came.");
}

TEST_F(ProgramTest, APortThatGoesAwayLeavesWhatIsKnownOfTheRun) {
    const std::string scenario = scenarioFile();
    const std::string results = folder.file("results.xml");
    const std::string page = folder.file("results.html");
    EXPECT_EQ(run({"run", "-p", "VIRTUAL", "--period", "400", "--fault", "hangup@only2", "--junit", results,
                   "--html", page, scenario}),
              3);
    EXPECT_NE(bytesOf(results).find("testcase"), std::string::npos);
    EXPECT_NE(bytesOf(page).find("</html>"), std::string::npos);
}

/// Between two lines, whatever is expected: a table without a failure would be green.
TEST_F(ProgramTest, APortThatGoesAwayIsAFailureOfTheNextLine) {
    const std::string results = folder.file("results.xml");
    const std::string first = file("first.expect", "[Expect]\r\nExpect0=R 0000.0 = OFF\r\n");
    for (const std::vector<std::string>& beside :
         {std::vector<std::string>{}, {"--expect", first}, {"--take", folder.file("taken.expect")}}) {
        PseudoTerminal gone;
        Output told;
        std::vector<std::string> arguments = {"run", "-p",      gone.path(), "--period",
                                              "400", "--junit", results,     scenarioFile()};
        arguments.insert(arguments.end(), beside.begin(), beside.end());
        std::thread farEnd([&told, &gone] {
            gone.read(9, 5s);
            gone.write({0xFF, 0xFF, 0xA1, 8, 0, 0, 0, 0, 0, 0, 0, 0, 0x30, 0x87});
            told.waitForMore(); // the first line has ended
            gone.closeFarEnd();
        });
        EXPECT_EQ(runInto(told, arguments), 3) << error.text();
        farEnd.join();
        EXPECT_NE(bytesOf(results).find("tests=\"2\" failures=\"1\""), std::string::npos) << bytesOf(results);
    }
}

TEST_F(ProgramTest, TellsAFileThatHoldsNothingOfTheKind) {
    const std::string path = file("nothing.txt", "nothing\n");
    EXPECT_EQ(run({"run", "-p", "VIRTUAL", path}), 4);
    EXPECT_NE(error.text().find(path), std::string::npos);
    EXPECT_EQ(run({"simulate", "-p", "VIRTUAL", path}), 4);
    EXPECT_EQ(run({"simulate", "-p", "VIRTUAL", folder.path() + "/none"}), 2);
}

TEST_F(ProgramTest, AnswersFromPreparedPairs) {
    const std::string path = pairsFile();
    std::vector<std::uint8_t> answer;
    EXPECT_EQ(runUntilEnded({"--json", "simulate", "-p", line.path(), path},
                            [&] {
                                line.write({1, 2, 3, 4, 5});
                                answer = line.read(3, 5s);
                                out.waitForMore();
                                line.write({9, 9});
                                out.waitForMore();
                            }),
              0);
    EXPECT_EQ(answer, (std::vector<std::uint8_t>{0xAA, 0xBB, 0xCC}));
    ASSERT_EQ(objects().size(), 4U);
    EXPECT_EQ(objects()[0]["outcome"], "answered by a pair");
    EXPECT_EQ(objects()[0]["pair"], 1);
    EXPECT_EQ(objects()[1]["outcome"], "unknown");
    EXPECT_EQ(objects()[2]["type"], "pair");
    EXPECT_EQ(objects()[3]["type"], "unmatched");
}

TEST_F(ProgramTest, FindsWhatIsWrongWithPreparedPairs) {
    const std::string right = file("right.ini", "[Information]\r\nTotal=1\r\n[Receive]\r\n"
                                                "0=FF00230364020490F0\r\n[Send]\r\n"
                                                "0=00FFA3080000000000000000C658\r\n");
    EXPECT_EQ(run({"lint", right}), 0) << out.text();
    EXPECT_EQ(out.text(), "");
    const std::string path = file("pairs.ini", "[Information]\r\nTotal=1\r\n[Receive]\r\n0=0102\r\n"
                                               "[Send]\r\n0=xyz\r\n");
    EXPECT_EQ(run({"--json", "lint", path}), 1);
    EXPECT_EQ(objects().back()["pair"], 1);
    EXPECT_EQ(objects().back()["problem"], "The answer is no frame, so nothing is sent.");
}

TEST_F(ProgramTest, ListsAndLogsWhatComesIn) {
    const std::string log = folder.path() + "/log.txt";
    EXPECT_EQ(runUntilEnded({"monitor", "-p", line.path(), "--log", log},
                            [&] {
                                line.write({0x01, 0xFF});
                                out.waitForMore();
                            }),
              0);
    EXPECT_EQ(out.text(), "01 FF \n");
    EXPECT_EQ(bytesOf(log), std::string("01 FF ") + lineEnd);
}

} // namespace
} // namespace varda::test
