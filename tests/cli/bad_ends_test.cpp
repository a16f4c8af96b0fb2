#include "cli/program_fixture.h"
#include "core/files/append_file.h"
#include "core/insight/pcapng.h"

#include <array>
#include <atomic>
#include <filesystem>
#include <fstream>

namespace varda::test {
namespace {

using namespace std::chrono_literals;

using Arguments = std::vector<std::string>;

/// Output that cannot be written, a line that goes away, files that cannot be made: with every subcommand.
class BadEnds : public ProgramTest {
protected:
    /// Those that write by themselves what was asked for.
    std::vector<Arguments> thatWrite() {
        return {{"read", "-p", "VIRTUAL", "W 0"},
                {"write", "-p", "VIRTUAL", "W 0=1"},
                {"mixed-read", "-p", "VIRTUAL", "W 0 R 0.0"},
                {"mixed-write", "-p", "VIRTUAL", "W 0=1 R 0.0=ON"},
                {"run", "-p", "VIRTUAL", "--period", "400", scenarioFile()},
                {"decode", "FF00230364020490F0"},
                {"lint", pairsFile()},
                {"--help"},
                {"read", "--help"},
                {"--version"},
                {"--print-manual-page"},
                {"--print-bash-completion"}};
    }

    /// Those that write what comes over the line.
    std::vector<Arguments> thatServe() {
        return {{"monitor", "-p", line.path()}, {"simulate", "-p", line.path(), pairsFile()}};
    }

    void expectRefusal(int code, const Arguments& arguments) {
        EXPECT_EQ(code, 4) << arguments.front();
        EXPECT_EQ(error.text().find("varda-cli: Standard output takes no more") != std::string::npos, true)
            << arguments.front() << ": " << error.text();
    }
};

TEST_F(BadEnds, OfAClosedOutputAreToldByEverySubcommand) {
    for (const Arguments& arguments : thatWrite()) {
        std::ostream closed(nullptr);
        expectRefusal(runInto(closed, arguments), arguments);
    }
    for (const Arguments& arguments : thatServe()) {
        std::ostream closed(nullptr);
        expectRefusal(runBeside(closed, arguments, [this] { line.write({1, 2, 3, 4, 5}); }), arguments);
    }
}

TEST_F(BadEnds, OfAClosedOutputLeaveTheLogWhole) {
    std::ostream closed(nullptr);
    const std::string log = folder.file("line.log");
    EXPECT_EQ(runBeside(closed, {"monitor", "-p", line.path(), "--log", log}, [this] { line.write({7}); }),
              4);
    EXPECT_EQ(bytesOf(log), std::string("07 ") + lineEnd);
}

#ifndef _WIN32
TEST_F(BadEnds, OfAFullDiskAreToldByEverySubcommand) {
    for (const Arguments& arguments : thatWrite()) {
        std::ofstream full("/dev/full");
        expectRefusal(runInto(full, arguments), arguments);
    }
    for (const Arguments& arguments : thatServe()) {
        std::ofstream full("/dev/full");
        expectRefusal(runBeside(full, arguments, [this] { line.write({1, 2, 3, 4, 5}); }), arguments);
    }
}

TEST_F(BadEnds, OfALogOnAFullDiskAreTold) {
    EXPECT_EQ(runBeside({"monitor", "-p", line.path(), "--log", "/dev/full"},
                        [this] {
                            line.write({1, 2, 3});
                        }),
              4);
    EXPECT_NE(error.text().find("/dev/full"), std::string::npos) << error.text();
}
#endif

TEST_F(BadEnds, OfResultsThatCannotBeWrittenAreTold) {
    const std::string results = folder.file("missing") + "/results.xml";
    EXPECT_EQ(run({"run", "-p", "VIRTUAL", "--period", "400", "--junit", results, scenarioFile()}), 4);
    EXPECT_NE(error.text().find("results.xml"), std::string::npos) << error.text();
    EXPECT_NE(out.text().find("2 right"), std::string::npos) << "what was found out stands all the same";
}

TEST_F(BadEnds, OfOneResultLeaveTheOthers) {
    const std::string missing = folder.file("missing") + "/results";
    const std::string page = folder.file("results.html");
    const std::string taken = folder.file("taken.expect");
    EXPECT_EQ(run({"run", "-p", "VIRTUAL", "--period", "400", "--junit", missing, "--html", page, "--take",
                   taken, scenarioFile()}),
              4);
    EXPECT_NE(bytesOf(page).find("</html>"), std::string::npos);
    EXPECT_NE(bytesOf(taken).find("Expect1="), std::string::npos);
    EXPECT_EQ(
        runUntilEnded({"simulate", "-p", line.path(), "--memory-file", missing, "--save-memory", pairsFile()},
                      [this] { // answered, it waits for its end
                          line.write({1, 2, 3, 4, 5});
                          line.read(3, std::chrono::seconds(5));
                      }),
        4);
    EXPECT_NE(error.text().find("missing"), std::string::npos) << error.text();
    EXPECT_NE(out.text().find("pair 1: answered once"), std::string::npos) << out.text();
}

TEST_F(BadEnds, OfALogThatCannotBeMadeAreTold) {
    EXPECT_EQ(run({"monitor", "-p", line.path(), "--log", folder.file("missing") + "/line.log"}), 4);
    EXPECT_NE(error.text().find("line.log"), std::string::npos) << error.text();
}

TEST_F(BadEnds, OfALineThatGoesAwayAreToldByEverySubcommand) {
    const std::string scenario = scenarioFile();
    const std::string pairs = pairsFile();
    const std::vector<Arguments> subcommands = {{"read", "W 0"},
                                                {"write", "W 0=1"},
                                                {"mixed-read", "W 0 R 0.0"},
                                                {"mixed-write", "W 0=1 R 0.0=ON"},
                                                {"run", "--period", "50", scenario}};
    for (Arguments arguments : subcommands) {
        PseudoTerminal gone;
        arguments.insert(arguments.begin() + 1, {"-p", gone.path()});
        std::thread farEnd([&gone] {
            gone.read(9, 5s);
            gone.closeFarEnd();
        });
        EXPECT_EQ(run(arguments), 3) << arguments.front();
        farEnd.join();
        EXPECT_NE(error.text().find("went away"), std::string::npos) << arguments.front() << error.text();
    }
    for (Arguments arguments : {Arguments{"monitor"}, Arguments{"simulate", pairs}}) {
        PseudoTerminal gone;
        arguments.insert(arguments.begin() + 1, {"-p", gone.path()});
        EXPECT_EQ(runBeside(arguments, [&gone] { gone.closeFarEnd(); }), 3) << arguments.front();
        EXPECT_NE(error.text().find("went away"), std::string::npos) << arguments.front() << error.text();
    }
}

/// A byte comes just before a send, which throws it away before it is read; then nothing comes any more.
TEST_F(BadEnds, OfALineThatFallsSilentAfterAByteThatWasThrownAwayAreTold) {
    std::atomic<bool> hasEnded = false;
    std::thread farEnd([this, &hasEnded] {
        line.read(9, 5s);
        line.write({7});
        for (int wait = 0; wait < 1000 && !hasEnded; ++wait) {
            std::this_thread::sleep_for(20ms);
        }
        line.write({7}); // ends what would wait for ever
    });
    EXPECT_EQ(run({"--json", "run", "-p", line.path(), "--rounds", "10", "--period", "20", scenarioFile()}),
              1);
    hasEnded = true;
    farEnd.join();
    EXPECT_EQ(objects().at(objects().size() - 2)["outcome"], "silent") << out.text();
}

TEST_F(BadEnds, OfAPortThatIsNotThereAreToldByEverySubcommand) {
    const std::string scenario = scenarioFile();
    const std::string pairs = pairsFile();
    for (Arguments arguments :
         {Arguments{"read", "W 0"}, Arguments{"write", "W 0=1"}, Arguments{"mixed-read", "W 0"},
          Arguments{"mixed-write", "W 0=1"}, Arguments{"run", scenario}, Arguments{"simulate", pairs},
          Arguments{"monitor"}}) {
        arguments.insert(arguments.begin() + 1, {"-p", "/dev/nothing"});
        EXPECT_EQ(run(arguments), 3) << arguments.front();
        EXPECT_NE(error.text().find("/dev/nothing"), std::string::npos) << error.text();
        EXPECT_EQ(out.text(), "");
    }
}

TEST_F(BadEnds, OfFilesThatAreNoneAreToldByEverySubcommand) {
    for (const Arguments& arguments :
         {Arguments{"run", "-p", "VIRTUAL"}, Arguments{"simulate", "-p", "VIRTUAL"}, Arguments{"lint"}}) {
        Arguments missing = arguments;
        missing.push_back(folder.file("none.ini"));
        EXPECT_EQ(run(missing), 2) << arguments.front();
        EXPECT_NE(error.text().find("File does not exist: " + folder.file("none.ini")), std::string::npos)
            << error.text();
        Arguments aFolder = arguments;
        aFolder.push_back(folder.path());
        EXPECT_EQ(run(aFolder), 2) << arguments.front();
        EXPECT_NE(error.text().find(folder.path() + " is a folder"), std::string::npos) << error.text();
    }
}

TEST_F(BadEnds, OfAFileThatIsNamedTwiceAreToldBeforeItIsWritten) {
    const std::string scenario = scenarioFile();
    const std::string kept = bytesOf(scenario);
    const std::string detour = folder.path() + "/../" + folder.path().substr(folder.path().rfind('/') + 1);
    const std::string capture = file("line.pcapng", captureHeading());
    const std::string both = folder.file("both");
    for (const Arguments& arguments :
         {Arguments{"run", "-p", "VIRTUAL", "--junit", detour + "/two.scn", scenario},
          Arguments{"run", "-p", "VIRTUAL", "--html", scenario, scenario},
          Arguments{"run", "-p", "VIRTUAL", "--junit", both, "--html", both, scenario},
          Arguments{"run", "-p", "VIRTUAL", "--html", both, "--take", detour + "/both", scenario},
          Arguments{"convert", capture, "--scenario", both, "--packets", both},
          Arguments{"convert", capture, "--packets", capture},
          Arguments{"monitor", "-p", "VIRTUAL", "--log", both, "--pcapng", both}}) {
        EXPECT_EQ(run(arguments), 2) << arguments.front();
        EXPECT_NE(error.text().find("is named twice"), std::string::npos) << error.text();
        EXPECT_EQ(bytesOf(both), "") << arguments.front();
    }
    EXPECT_EQ(bytesOf(scenario), kept);
    EXPECT_EQ(bytesOf(capture), captureHeading());
}

#ifndef _WIN32
TEST_F(BadEnds, OfFilesThatCannotBeLookedAtAreNotThoseOfMissingOnes) {
    const std::string circle = folder.file("circle");
    std::filesystem::create_symlink(circle, circle);
    for (const Arguments& arguments :
         {Arguments{"run", "-p", "VIRTUAL", circle}, Arguments{"simulate", "-p", "VIRTUAL", circle},
          Arguments{"lint", circle}, Arguments{"compare", circle, circle}}) {
        EXPECT_EQ(run(arguments), 4) << arguments.front();
        EXPECT_NE(error.text().find("could not be read"), std::string::npos) << error.text();
    }
}

TEST_F(BadEnds, AreNotThoseOfResultsOfAFileWhoseNameIsNoText) {
    const std::string scenario = folder.file("gr\xFC\xDF\x01\x1B.scn");
    writeBytes(scenario, bytesOf(scenarioFile()));
    const std::string results = folder.file("results.xml");
    const std::string page = folder.file("results.html");
    EXPECT_EQ(run({"run", "-p", "VIRTUAL", "--period", "400", "--junit", results, "--html", page, scenario}),
              0)
        << error.text();
    for (const std::string& made : {bytesOf(results), bytesOf(page)}) {
        EXPECT_NE(made.find("gr\xEF\xBF\xBD\xEF\xBF\xBD??.scn"), std::string::npos) << made;
    }
}
#endif

TEST_F(BadEnds, OfPairsWhoseNumberIsNoneAreThoseOfTheirFile) {
    const std::string pairs = file("odd.ini", "[Information]\r\nTotal=five\r\n");
    for (const Arguments& arguments :
         {Arguments{"lint", pairs}, Arguments{"simulate", "-p", "VIRTUAL", pairs}}) {
        EXPECT_EQ(run(arguments), 4) << arguments.front();
        EXPECT_NE(error.text().find(pairs + ": Total of the file is \"five\""), std::string::npos)
            << error.text();
    }
}

TEST_F(BadEnds, AreNotThoseOfFilesWithNamesInAnyLetters) {
    const std::string pairs = file(notAscii, bytesOf(pairsFile()));
    EXPECT_EQ(run({"lint", pairs}), 1) << error.text();
    EXPECT_NE(out.text().find(notAscii), std::string::npos);
}

} // namespace
} // namespace varda::test
