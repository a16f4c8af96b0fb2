#include "core/files/profile_file.h"
#include "core/pairs/packet_file.h"
#include "core/pairs/packet_table.h"
#include "core/protocol/frame_text.h"
#include "core/protocol/hex_text.h"
#include "core/recordings/recordings.h"
#include "core/runs/living_controller.h"
#include "window/simulator/simulation_page_fixture.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

#include <csignal>
#include <vector>

namespace varda::test {
namespace {

/// The window on one end of a line, and the tool, a process of its own, on the other.
class ToolBesideWindowTest : public SimulationPageTest {
protected:
    ToolBesideWindowTest() {
        tool.setProcessChannelMode(QProcess::SeparateChannels);
        openLine();
    }
    void TearDown() override {
        tool.kill();
        tool.waitForFinished();
    }

    /// Prepares a pair of each request, with the answer of a controller whose register W 0100 is 1234h.
    void prepare(const std::vector<const char*>& requests) {
        Controller asked;
        asked.setWord(612, 0x1234);
        PacketTable table;
        for (const char* const request : requests) {
            const auto pair = pairFromMemory(bytesOfText(request), asked.memory());
            table.addPair(pair.value().request, pair.value().answer);
        }
        const std::string path = folder.file("pairs.ini");
        ProfileFile file = ProfileFile::load(path);
        storePackets(table, file);
        file.save(path);
        load(path);
        ASSERT_EQ(requests.size(), static_cast<std::size_t>(this->requests()->rowCount()));
    }
    /// @param arguments behind the subcommand
    void start(const char* subcommand, const std::vector<std::string>& arguments) {
        QStringList all = {QStringLiteral("--json"), QLatin1String(subcommand), QStringLiteral("--port"),
                           QString::fromStdString(other.path())};
        for (const std::string& argument : arguments) {
            all.append(QString::fromStdString(argument));
        }
        tool.start(QStringLiteral(VARDA_CLI_PROGRAM), all);
        ASSERT_TRUE(tool.waitForStarted());
    }
    /// What comes out of one end goes into the other one.
    void carry() {
        if (const Bytes asked = other.readAvailable(); !asked.empty()) {
            line.write(asked);
        }
        if (const Bytes answered = line.readAvailable(); !answered.empty()) {
            other.write(answered);
        }
    }
    bool carryUntil(const std::function<bool()>& condition) {
        return runUntil(
            [&] {
                carry();
                return condition();
            },
            std::chrono::seconds(60));
    }
    /// @return the exit code; -1 where it does not end, or not by itself
    int end() {
        const bool hasEnded = carryUntil([this] { return tool.state() == QProcess::NotRunning; });
        return hasEnded && tool.exitStatus() == QProcess::NormalExit ? tool.exitCode() : -1;
    }
    int run(const char* subcommand, const std::vector<std::string>& arguments) {
        start(subcommand, arguments);
        return end();
    }
    bool isReady() {
        return carryUntil([this] {
            said += tool.readAllStandardError();
            return said.contains("Ctrl+C");
        });
    }
    int endBySignal() {
        ::kill(static_cast<pid_t>(tool.processId()), SIGTERM);
        return end();
    }
    /// What it wrote since the last call.
    std::vector<QJsonObject> objects() {
        std::vector<QJsonObject> read;
        for (const QByteArray& text : tool.readAllStandardOutput().split('\n')) {
            if (!text.isEmpty()) {
                read.push_back(QJsonDocument::fromJson(text).object());
            }
        }
        return read;
    }
    std::string value(const QJsonObject& object, const char* name) {
        return object.value(QLatin1String(name)).toString().toStdString();
    }

    static constexpr const char* words = "FF 00 23 03 64 02 04 90 F0 ";
    static constexpr const char* bit = "FF 00 21 03 C3 00 01 99 B0 ";

    PseudoTerminal other; ///< the tool's end
    QProcess tool;
    QByteArray said;
};

TEST_F(ToolBesideWindowTest, ReadsWhatIsPrepared) {
    prepare({words, bit});
    EXPECT_EQ(run("read", {"W 0100 4", "R 0012.3"}), 0) << tool.readAllStandardError().toStdString();
    const auto read = objects();
    ASSERT_EQ(read.size(), 2U);
    EXPECT_EQ(value(read[0], "outcome"), "answered");
    EXPECT_EQ(read[0].value(QLatin1String("values"))[0][QLatin1String("value")].toInt(), 0x1234);
    EXPECT_EQ(value(read[1], "request") + ' ', hexRun(bytesOfText(bit)) + ' ');
    EXPECT_EQ(selectedRequest(), 1) << "the pair that answered last";
}

TEST_F(ToolBesideWindowTest, WhatIsNotPreparedGetsNoAnswer) {
    prepare({words});
    EXPECT_EQ(run("read", {"--period", "100", "W 0200"}), 1);
    const auto read = objects();
    ASSERT_EQ(read.size(), 1U);
    EXPECT_EQ(value(read[0], "outcome"), "silent");
    EXPECT_EQ(text("txtSimRP"), value(read[0], "request"));
}

TEST_F(ToolBesideWindowTest, WritesWhatIsPrepared) {
    prepare({"FF 00 24 06 64 02 2B 1A 07 00 7B E8 ", "FF 00 22 03 00 0C FF A9 0C "});
    EXPECT_EQ(run("write", {"W 0100=1A2Bh,7", "M 0000.0=ON"}), 0);
    const auto written = objects();
    ASSERT_EQ(written.size(), 2U);
    EXPECT_EQ(value(written[0], "answer"), "00FFA401005467");
    EXPECT_EQ(value(written[1], "answer"), "00FFA20100B466");
}

TEST_F(ToolBesideWindowTest, MixesWhatIsPrepared) {
    prepare({"FF 00 25 0A C3 00 64 42 65 42 66 42 67 42 0D 1E 00 ",
             "FF 00 26 07 00 0C FF 64 42 07 00 6F B8 00 "});
    EXPECT_EQ(run("mixed-read", {"R 0012.3", "W 0100 4"}), 0) << tool.readAllStandardOutput().toStdString();
    auto mixed = objects();
    ASSERT_EQ(mixed.size(), 1U);
    EXPECT_EQ(mixed[0].value(QLatin1String("values"))[1][QLatin1String("value")].toInt(), 0x1234);
    EXPECT_EQ(run("mixed-write", {"M 0000.0=ON", "W 0100=7"}), 0);
    mixed = objects();
    ASSERT_EQ(mixed.size(), 1U);
    EXPECT_EQ(value(mixed[0], "answer"), "00FFA60100F5A7");
}

TEST_F(ToolBesideWindowTest, RunsAScenarioAndJudgesIt) {
    prepare({words, bit});
    const std::string scenario =
        write("two.scn",
              std::string("[Information]\nTotal=2\n[Scenario]\nScenario0=") + words + "\nScenario1=" + bit);
    const std::string right =
        write("right.expect", "[Expect]\nExpect0=W 0100 = 1234h\nExpect1=R 0012.3 = OFF\n");
    const std::string wrong = write("wrong.expect", "[Expect]\nExpect0=W 0100 = 1235h\n");
    const std::string results = folder.file("results.xml");
    EXPECT_EQ(run("run", {"--expect", right, "--junit", results, "--rounds", "2", scenario}), 0);
    EXPECT_EQ(objects().back().value(QLatin1String("right")).toInt(), 4);
    EXPECT_TRUE(QFile::exists(QString::fromStdString(results)));
    EXPECT_EQ(run("run", {"--expect", wrong, scenario}), 1);
    EXPECT_EQ(objects().back().value(QLatin1String("wrong")).toInt(), 1);
}

TEST_F(ToolBesideWindowTest, PlaysARecording) {
    prepare({words});
    const std::string path =
        write("line.pcapng", captureOf({sentAt(0ms, wordRequest), sentAt(500ms, wordRequest)}));
    EXPECT_EQ(run("play", {path}), 0);
    const auto played = objects();
    ASSERT_EQ(played.size(), 3U);
    EXPECT_EQ(value(played[1], "outcome"), "answered");
    EXPECT_EQ(played[2].value(QLatin1String("played")).toInt(), 2);
}

TEST_F(ToolBesideWindowTest, HearsWhatTheWindowAnswers) {
    prepare({words});
    const std::string answered = answer(0);
    start("monitor", {"--pcapng", folder.file("line.pcapng")});
    ASSERT_TRUE(isReady());
    line.write(wordRequest); // of somebody else on the same line
    std::vector<QJsonObject> heard;
    EXPECT_TRUE(carryUntil([&] {
        for (QJsonObject& object : objects()) {
            heard.push_back(std::move(object));
        }
        return !heard.empty();
    }));
    EXPECT_EQ(endBySignal(), 0);
    ASSERT_EQ(heard.size(), 1U);
    EXPECT_EQ(value(heard[0], "bytes"), answered);
}

TEST_F(ToolBesideWindowTest, AnswersTheScenarioOfTheWindow) {
    driver.click("optMode_0");
    driver.click("cmdLoadScenario");
    chooseFile(
        write("one.scn", std::string("[Information]\nTotal=1\n[Scenario]\nScenario0=") + words + "\n"));
    const std::string memory = write("memory.csv", "W 0100,4660\n");
    start("simulate", {"--memory-file", memory});
    ASSERT_TRUE(isReady());
    paste("txtScnPeriod", "700");
    driver.click("cmdRunScenario");
    EXPECT_TRUE(carryUntil([this] { return text("txtScnReceive").substr(0, 18) == "00 FF A3 08 34 12 "; }));
    driver.click("cmdStopScenario");
    EXPECT_EQ(endBySignal(), 0);
    const auto told = objects();
    ASSERT_GE(told.size(), 2U);
    EXPECT_EQ(value(told.front(), "outcome"), "answered from memory");
    EXPECT_EQ(value(told.back(), "type"), "unmatched");
}

} // namespace
} // namespace varda::test
