#include "cli/program_fixture.h"

#include "core/faults/fault_plan.h"
#include "core/files/profile_file.h"
#include "core/insight/expectation.h"
#include "core/protocol/frame_text.h"
#include "core/recordings/capture_file.h"
#include "core/recordings/capture_loading.h"
#include "core/runs/scenario_file.h"
#include "core/virtual/controller.h"
#include "core/virtual/controller_memory.h"

#include <array>
#include <filesystem>
#include <fstream>

namespace varda::test {
namespace {

using namespace std::chrono_literals;

const Bytes wordRequest = bytesOfText("FF 00 23 03 64 02 04 90 F0 ");
const Bytes wordAnswer = bytesOfText("00 FF A3 08 00 00 00 00 00 00 00 00 C6 58 ");

/// Faults, memories, expectations and recordings, by the tool.
class BenchTest : public ProgramTest {
protected:
    std::string pairs() {
        return file("pairs.ini", "[Information]\r\nTotal=1\r\n[Receive]\r\n0=FF00230364020490F0\r\n"
                                 "[Send]\r\n0=00FFA3080000000000000000C658\r\n");
    }
    /// A recording of a master that asked twice.
    std::string capture(const std::string& name = "line.pcapng", std::uint8_t value = 0) {
        Bytes second = wordAnswer;
        second[4] = value;
        return file(name, captureHeading() + packet(0ms, true, wordRequest) +
                              packet(20ms, false, wordAnswer) + packet(400ms, true, wordRequest) +
                              packet(420ms, false, second));
    }
    std::string error4(const std::vector<std::string>& arguments) {
        EXPECT_EQ(run(arguments), 4) << arguments.front();
        return error.text();
    }
    std::vector<Json> ofType(const char* type) const {
        std::vector<Json> found;
        for (const Json& object : objects()) {
            if (object["type"] == type) {
                found.push_back(object);
            }
        }
        return found;
    }

private:
    static std::string packet(std::chrono::milliseconds time, bool isSent, const Bytes& bytes) {
        return captured(
            {std::chrono::system_clock::time_point(1'800'000'000s) + time, isSent, bytes, bytes.size(), ""});
    }
};

// Faults

TEST_F(BenchTest, FaultsAreDoneToRequestsAndReported) {
    EXPECT_EQ(run({"--json", "read", "-p", "VIRTUAL", "--period", "100", "--fault", "check@2nd", "--seed",
                   "5", "W 0 1", "W 1 1"}),
              1);
    const auto read = objects();
    ASSERT_EQ(read.size(), 3U);
    EXPECT_EQ(read[0]["outcome"], "answered");
    EXPECT_EQ(read[1]["type"], "fault");
    EXPECT_EQ(read[1]["frame"], 2);
    EXPECT_EQ(read[1]["name"], "check");
    EXPECT_EQ(read[1]["done"], "request 2: check broken");
    EXPECT_EQ(read[2]["outcome"], "silent") << "a controller says nothing to a wrong check";
    EXPECT_EQ(error.text(), "");
}

TEST_F(BenchTest, ASeedThatWasDrawnIsTold) {
    EXPECT_EQ(run({"mixed-read", "-p", "VIRTUAL", "--fault", "late=1", "W 0 R 0.0"}), 0);
    EXPECT_NE(error.text().find("The faults are drawn with --seed "), std::string::npos);
    EXPECT_NE(out.text().find("on purpose: request 1: 1 ms late"), std::string::npos);
}

TEST_F(BenchTest, AFaultThatIsNoneIsAUsageError) {
    const std::string scenario = scenarioFile();
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"read", "-p", "VIRTUAL", "--fault", "flop", "W 0"},
          {"write", "-p", "VIRTUAL", "--fault", "flop", "W 0=1"},
          {"mixed-read", "-p", "VIRTUAL", "--fault", "flop", "W 0"},
          {"mixed-write", "-p", "VIRTUAL", "--fault", "flop", "W 0=1"},
          {"run", "-p", "VIRTUAL", "--fault", "flop", scenario},
          {"play", "-p", "VIRTUAL", "--fault", "flop", capture()},
          {"simulate", "-p", "VIRTUAL", "--fault", "flop", "--memory"}}) {
        EXPECT_EQ(run(arguments), 2) << arguments.front();
        EXPECT_NE(error.text().find("\"flop\" is no fault. There are: hangup"), std::string::npos)
            << error.text();
    }
    for (const char* const seed : {"x", "", "-1", "18446744073709551616"}) {
        EXPECT_EQ(run({"read", "-p", "VIRTUAL", "--fault", "late=1", "--seed", seed, "W 0"}), 2) << seed;
        EXPECT_NE(error.text().find("--seed"), std::string::npos) << error.text();
    }
}

TEST_F(BenchTest, AHangUpOnPurposeEndsAsOneThatIsNot) {
    EXPECT_EQ(run({"read", "-p", line.path(), "--fault", "hangup", "W 0"}), 3);
    EXPECT_NE(error.text().find("hung up on purpose"), std::string::npos);
}

TEST_F(BenchTest, TheSameSeedSendsTheSameBytes) {
    const auto sent = [this] {
        std::vector<std::uint8_t> heard;
        EXPECT_EQ(runUntilEnded({"simulate", "-p", line.path(), "--fault", "flip=1..3,noise-before", "--seed",
                                 "77", pairs()},
                                [&] {
                                    for (int count = 0; count < 3; ++count) {
                                        line.write(wordRequest);
                                        const auto more = line.read(15, 2s);
                                        heard.insert(heard.end(), more.begin(), more.end());
                                        std::this_thread::sleep_for(100ms);
                                        const auto rest = line.readAvailable();
                                        heard.insert(heard.end(), rest.begin(), rest.end());
                                    }
                                }),
                  0);
        return heard;
    };
    const auto first = sent();
    EXPECT_GT(first.size(), 3 * wordAnswer.size());
    EXPECT_EQ(sent(), first);
}

// Memory

TEST_F(BenchTest, AControllerWithAMemoryNeedsNoPairs) {
    const std::string memory = file("memory.csv", "W 0100,4660\n");
    std::vector<std::uint8_t> answer;
    EXPECT_EQ(
        runUntilEnded({"--json", "simulate", "-p", line.path(), "--memory-file", memory, "--save-memory"},
                      [&] {
                          line.write(wordRequest);
                          answer = line.read(14, 5s);
                          out.waitForMore();
                      }),
        0);
    ASSERT_EQ(answer.size(), 14U);
    EXPECT_EQ(answer[4], 0x34);
    EXPECT_EQ(answer[5], 0x12);
    EXPECT_EQ(objects().at(0)["outcome"], "answered from memory");
    const auto unmatched = ofType("unmatched");
    ASSERT_EQ(unmatched.size(), 1U);
    EXPECT_EQ(unmatched[0]["count"], 1);
    EXPECT_EQ(unmatched[0]["isAnswered"], true);
    EXPECT_NE(bytesOf(memory).find("W 0100,4660\n"), std::string::npos);
    EXPECT_NE(bytesOf(memory).find("SR 000,1\n"), std::string::npos) << "it moves with each answer";
}

TEST_F(BenchTest, TellsHowOftenEachPairAnswered) {
    EXPECT_EQ(runUntilEnded({"simulate", "-p", line.path(), pairs()},
                            [&] {
                                line.write(wordRequest);
                                line.read(14, 5s);
                                out.waitForMore();
                                line.write({1, 2, 3});
                                out.waitForMore();
                            }),
              0);
    EXPECT_NE(out.text().find("pair 1: answered once\n"), std::string::npos) << out.text();
    EXPECT_NE(out.text().find("no prepared pair: unknown 01 02 03 came once, not answered\n"),
              std::string::npos)
        << out.text();
}

TEST_F(BenchTest, TheMemoryIsSavedAlsoWhereThePortGoesAway) {
    const std::string memory = folder.file("new.csv");
    EXPECT_EQ(runBeside({"simulate", "-p", line.path(), "--memory-file", memory, "--save-memory"},
                        [&] { line.closeFarEnd(); }),
              3);
    EXPECT_EQ(bytesOf(memory).front(), '#');
}

TEST_F(BenchTest, MemoriesThatCannotBeUsedAreTold) {
    EXPECT_NE(
        error4({"simulate", "-p", "VIRTUAL", "--memory-file", folder.file("none.csv")}).find("is not there"),
        std::string::npos);
    EXPECT_NE(error4({"simulate", "-p", "VIRTUAL", "--memory-file", file("bad.csv", "W 0100,4\nQ 5,1\n")})
                  .find("Line 2: \"Q 5\" is no register"),
              std::string::npos);
    error4({"simulate", "-p", "VIRTUAL", "--memory-file", folder.path()});
    EXPECT_EQ(run({"simulate", "-p", "VIRTUAL"}), 2);
    EXPECT_NE(error.text().find("say --memory"), std::string::npos);
    EXPECT_EQ(run({"simulate", "-p", "VIRTUAL", "--memory", "--save-memory"}), 2);
}

// Expectations

TEST_F(BenchTest, TakesWhatComesAndExpectsItFromThenOn) {
    const std::string scenario = scenarioFile();
    const std::string taken = folder.file("taken.expect");
    EXPECT_EQ(run({"run", "-p", "VIRTUAL", "--period", "150", "--rounds", "2", "--take", taken, scenario}),
              0);
    EXPECT_NE(bytesOf(taken).find("Expect1=FF FF A3 08 00 00"), std::string::npos) << bytesOf(taken);
    EXPECT_EQ(run({"run", "-p", "VIRTUAL", "--period", "150", "--expect", taken, scenario}), 0) << out.text();
}

TEST_F(BenchTest, TakesSilence) {
    const std::string taken = folder.file("taken.expect");
    EXPECT_EQ(run({"run", "-p", line.path(), "--period", "150", "--take", taken, scenarioFile()}), 0);
    EXPECT_NE(bytesOf(taken).find("Expect0=silence"), std::string::npos) << bytesOf(taken);
}

TEST_F(BenchTest, WritesAPageThatNeedsNothingElse) {
    const std::string page = folder.file("results.html");
    const std::string scenario = folder.file("a & 'c'.scn");
    std::filesystem::copy_file(scenarioFile(), scenario);
    const std::string wrong = file("wrong.expect", "[Expect]\r\nExpect1=W 0002 >= 10\r\n");
    EXPECT_EQ(run({"run", "-p", "VIRTUAL", "--period", "150", "--expect", wrong, "--html", page, scenario}),
              1);
    const std::string html = bytesOf(page);
    EXPECT_NE(html.find("a &amp; &#39;c&#39;.scn</h1>"), std::string::npos) << html;
    EXPECT_NE(html.find("1 right</span>"), std::string::npos);
    EXPECT_NE(html.find("W 0002 &gt;= 10 was wanted"), std::string::npos);
    EXPECT_NE(html.find("prefers-color-scheme: dark"), std::string::npos);
    for (const char* const outside : {"://", "src=", "<script", "url(", "@import", "<b>"}) {
        EXPECT_EQ(html.find(outside), std::string::npos) << outside;
    }
}

// Recordings

TEST_F(BenchTest, RecordsWhatItHears) {
    const std::string path = folder.file("line.pcapng");
    const auto before = std::chrono::system_clock::now() - 1s;
    EXPECT_EQ(runUntilEnded({"monitor", "-p", line.path(), "--pcapng", path},
                            [&] {
                                line.write(wordRequest);
                                out.waitForMore();
                                EXPECT_EQ(loadCapture(path).recording.size(), 1U) << "before the end";
                            }),
              0);
    const ReadCapture read = loadCapture(path);
    ASSERT_EQ(read.recording.size(), 1U);
    EXPECT_FALSE(read.isCut);
    EXPECT_EQ(read.recording[0].bytes, wordRequest);
    EXPECT_GT(read.recording[0].time, before);
    EXPECT_LT(read.recording[0].time, std::chrono::system_clock::now() + 1s);
}

TEST_F(BenchTest, PlaysARecording) {
    EXPECT_EQ(run({"--json", "play", "-p", "VIRTUAL", capture()}), 0);
    const auto exchanges = ofType("exchange");
    ASSERT_EQ(exchanges.size(), 2U);
    EXPECT_EQ(exchanges[1]["outcome"], "answered");
    const auto played = ofType("played");
    ASSERT_EQ(played.size(), 1U);
    EXPECT_EQ(played[0]["frames"], 2);
    EXPECT_EQ(played[0]["periodWanted"], 400.0);
    EXPECT_GE(played[0]["periodReached"], 400.0);
}

TEST_F(BenchTest, PlaysStepByStep) {
    EXPECT_EQ(run({"--json", "play", "-p", "VIRTUAL", "--step", capture()}, "\n"), 1) << "the input ended";
    EXPECT_EQ(ofType("played").at(0)["played"], 1);
    EXPECT_NE(error.text().find("2 of 2: press Enter"), std::string::npos) << error.text();
}

TEST_F(BenchTest, ConvertsARecording) {
    const std::string scenario = folder.file("new.scn");
    const std::string packets = folder.file("new.ini");
    const std::string expected = folder.file("new.expect");
    EXPECT_EQ(run({"convert", capture(), "--scenario", scenario, "--packets", packets, "--expect", expected}),
              0)
        << error.text();
    EXPECT_EQ(out.text(), scenario + ": 2 entries\n" + packets + ": 1 entry\n" + expected + ": 2 entries\n");
    EXPECT_EQ(run({"lint", packets}), 0) << out.text();
    EXPECT_EQ(run({"run", "-p", "VIRTUAL", "--period", "150", "--expect", expected, scenario}), 0)
        << out.text();
}

TEST_F(BenchTest, WhatIsExpectedStandsBesideTheScenarioInOneFile) {
    const std::string both = folder.file("both.ini");
    EXPECT_EQ(run({"convert", capture(), "--scenario", both, "--expect", both}), 0);
    EXPECT_EQ(run({"run", "-p", "VIRTUAL", "--period", "400", "--expect", both, both}), 0) << out.text();
}

TEST_F(BenchTest, ALineOfAScenarioThatIsNoFrameIsTheFilesFault) {
    const std::string bad = file("bad.scn", "[Information]\r\nTotal=1\r\n[Scenario]\r\nScenario0=what\r\n");
    EXPECT_NE(error4({"run", "-p", "VIRTUAL", bad}).find("\"what\" is no frame."), std::string::npos);
}

TEST_F(BenchTest, ComparesRecordings) {
    const std::string first = capture();
    EXPECT_EQ(run({"compare", first, capture("same.pcapng")}), 0);
    EXPECT_NE(out.text().find("The same bytes, at most 0 ms apart."), std::string::npos) << out.text();
    EXPECT_EQ(run({"--json", "compare", first, capture("other.pcapng", 7)}), 1);
    EXPECT_EQ(objects().at(0)["why"], "Burst 4 differs in byte 4: 00h and 07h.");
    EXPECT_EQ(objects().at(0)["same"], 3);
}

TEST_F(BenchTest, RecordingsThatCannotBeUsedAreTold) {
    const std::string bad = file("bad.pcapng", "hello");
    const std::string empty = file("empty.pcapng", captureHeading());
    for (const std::string& path : {bad, empty}) {
        EXPECT_NE(error4({"play", "-p", "VIRTUAL", path}).find(path), std::string::npos);
        EXPECT_NE(error4({"convert", path, "--scenario", folder.file("x.scn")}).find(path),
                  std::string::npos);
    }
    EXPECT_NE(error4({"compare", bad, empty}).find(bad), std::string::npos);
    EXPECT_EQ(error4({"compare", bad, empty}).find(".."), std::string::npos) << error.text();
    EXPECT_FALSE(std::filesystem::exists(folder.file("x.scn")));
    EXPECT_EQ(run({"convert", capture()}), 2);
    EXPECT_NE(error.text().find("--packets"), std::string::npos);
    EXPECT_EQ(run({"play", "-p", "VIRTUAL", "--speed", "0", capture()}), 2);
    EXPECT_EQ(run({"play", "-p", "/dev/nothing", capture()}), 3);
    const std::string whole = bytesOf(capture());
    EXPECT_EQ(run({"compare", capture(), file("cut.pcapng", whole.substr(0, whole.size() - 3))}), 1);
    EXPECT_NE(error.text().find("ends within a packet; the 3 before it were read."), std::string::npos);
}

TEST_F(BenchTest, TellsThatThePortWentAwayWhileItPlays) {
    std::thread farEnd([this] {
        line.read(9, 5s);
        line.closeFarEnd();
    });
    EXPECT_EQ(run({"--json", "play", "-p", line.path(), capture()}), 3);
    farEnd.join();
    EXPECT_EQ(objects().back()["type"], "played") << out.text();
    EXPECT_EQ(objects().back()["played"], 1);
}

#ifndef _WIN32
TEST_F(BenchTest, FilesThatTakeNoMoreAreTold) {
    const std::string scenario = scenarioFile();
    for (const char* const option : {"--junit", "--html", "--take"}) {
        error4({"run", "-p", "VIRTUAL", "--period", "150", option, folder.file("none/results"), scenario});
    }
    for (const char* const option : {"--scenario", "--packets", "--expect"}) {
        error4({"convert", capture(), option, folder.file("none/results")});
    }
    error4({"monitor", "-p", "VIRTUAL", "--pcapng", folder.file("none/line.pcapng")});
    error4({"monitor", "-p", "VIRTUAL", "--pcapng", "/dev/full"});
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"play", "-p", "VIRTUAL", capture()},
          {"compare", capture(), capture()},
          {"convert", capture(), "--scenario", folder.file("y.scn")}}) {
        std::ofstream full("/dev/full");
        EXPECT_EQ(runInto(full, arguments), 4) << arguments.front();
        EXPECT_NE(error.text().find("Standard output takes no more"), std::string::npos);
    }
}
#endif

TEST_F(BenchTest, TheDocumentHasEveryFault) {
    const std::string document = bytesOf(VARDA_CLI_DOCUMENT);
    for (const FaultRule& rule : faultRules()) {
        const std::string row = "| `" + std::string(rule.name) + "` | ";
        const auto place = document.find(row);
        ASSERT_NE(place, std::string::npos) << rule.name;
        const std::string found = document.substr(place, document.find('\n', place) - place);
        EXPECT_NE(found.find(rule.help), std::string::npos) << found;
        EXPECT_NE(found.find(rule.parameter), std::string::npos) << found;
    }
}

TEST_F(BenchTest, TheExampleOfTheManualIsMetByItsMemory) {
    const std::string data = VARDA_DATA_FOLDER;
    Controller controller;
    controller.setMemory(readMemory(bytesOf(data + "/example-memory.csv")));
    const auto scenario = loadScenario(ProfileFile::load(data + "/example.scn"));
    ASSERT_TRUE(scenario);
    const auto wanted = loadExpectations(ProfileFile::load(data + "/example.expect"), scenario->lines.size());
    for (std::size_t line = 0; line < scenario->lines.size(); ++line) {
        Exchange exchange;
        exchange.outcome = Outcome::Answered;
        exchange.request = bytesOfText(scenario->lines[line]);
        exchange.answer = controller.answer(exchange.request).value();
        ASSERT_TRUE(wanted[line]) << line;
        EXPECT_EQ(wanted[line]->judge(exchange), "") << line;
    }
}

TEST_F(BenchTest, TheExampleOfTheManualIsNotMetByAnEmptyMemory) {
    const std::string data = VARDA_DATA_FOLDER;
    EXPECT_EQ(run({"--json", "run", "-p", "VIRTUAL", "--period", "150", "--expect", data + "/example.expect",
                   data + "/example.scn"}),
              1);
    const auto expectations = ofType("expectation");
    ASSERT_EQ(expectations.size(), 3U);
    for (const Json& expectation : expectations) {
        EXPECT_EQ(expectation["isMet"], false) << expectation;
        EXPECT_NE(expectation["why"], "") << expectation;
    }
}

} // namespace
} // namespace varda::test
