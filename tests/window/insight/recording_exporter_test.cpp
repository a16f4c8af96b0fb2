#include "core/files/profile_file.h"
#include "core/protocol/frame_text.h"
#include "core/protocol/hex_text.h"
#include "window/bench/bench_window.h"
#include "window/insight/insight_fixture.h"

namespace varda::test {
namespace {

/// Files that this program reads, made of what went over the line.
class RecordingExporterTest : public InsightTest {
protected:
    std::string exported(const char* action, const std::string& name) {
        run(action);
        chooseFile(window.folder().file(name));
        return label("traceState");
    }
    ProfileFile read(const std::string& name) { return ProfileFile::load(window.folder().file(name)); }
    const Bytes wordRequest = checked({0xFF, 0xFF, 0x23, 0x03, 0x39, 0x02, 0x01}); // W 0057
    const Bytes wordTwo = checked({0xFF, 0xFF, 0xA3, 0x02, 0x78, 0x56});
};

TEST_F(RecordingExporterTest, AScenarioItsExpectationsAndPairsAreMade) {
    openPort();
    chooseWord(57);
    exchange(wordOne);
    window.advance(1000);
    exchange(wordTwo);
    window.advance(1000);
    EXPECT_NE(exported("exportAllScenario", "line.scn").find("2 requests written to line.scn"),
              std::string::npos);
    EXPECT_EQ(read("line.scn").value("Information", "Total", "", 100), "2");
    EXPECT_EQ(bytesOfText(read("line.scn").value("Scenario", "Scenario1", "", 100)), wordRequest);
    EXPECT_NE(exported("exportAllExpectations", "line.expect").find("2 expectations written to line.expect"),
              std::string::npos);
    EXPECT_EQ(bytesOfText(read("line.expect").value("Expect", "Expect1", "", 100)), wordTwo);
    EXPECT_NE(exported("exportAllPairs", "line.ini").find("1 pair, 1 answered otherwise later written to"),
              std::string::npos)
        << label("traceState");
    EXPECT_EQ(read("line.ini").value("Send", "0", "", 100), hexRun(wordOne));
}

TEST_F(RecordingExporterTest, TheFilesAreLoadedAgain) {
    openPort();
    chooseWord(57);
    exchange(wordOne);
    window.advance(1000);
    exported("exportAllScenario", "line.scn");
    exported("exportAllExpectations", "line.expect");
    window.click("cmdLoadScenario");
    window.chooseFile("line.scn");
    EXPECT_EQ(window.entryCount("lstSchedule"), 1);
    window.click("openBench");
    const auto* const table =
        window.window().bench().window()->findChild<QTableView*>(QStringLiteral("expectationTable"));
    EXPECT_EQ(bytesOfText(table->model()->index(0, 2).data().toString().toStdString()), wordOne);
}

TEST_F(RecordingExporterTest, LinesWithoutARequestMakeNoFile) {
    openPort();
    window.farEnd().deliver({1, 2, 3});
    window.advance(500);
    run("exportAllScenario");
    EXPECT_EQ(trace()->findChild<QFileDialog*>(), nullptr);
    EXPECT_NE(label("traceState").find("No request is among these lines"), std::string::npos);
}

TEST_F(RecordingExporterTest, AFileThatCannotBeWrittenIsTold) {
    openPort();
    chooseWord(57);
    exchange(wordOne);
    window.advance(1000);
    run("exportAllPairs");
    chooseFile(window.folder().file("nowhere/line.ini"));
    EXPECT_FALSE(boxText().empty());
}

} // namespace
} // namespace varda::test
