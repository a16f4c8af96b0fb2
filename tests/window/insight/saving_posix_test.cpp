#include "support/few_handles_posix.h"
#include "support/sanitized.h"
#include "window/insight/insight_fixture.h"

#include <fstream>

#include <sys/stat.h>

namespace varda::test {
namespace {

/// What the trace window takes to files and from them, where that fails.
class InsightSavingTest : public InsightTest {
protected:
    /// One exchange, so that there is something to save.
    InsightSavingTest() {
        openPort();
        chooseWord(57);
        exchange(wordOne);
        window.advance(1000);
    }

    /// What stands there and is no regular file.
    std::string pipe(const char* name) {
        std::string path = window.folder().file(name);
        EXPECT_EQ(::mkfifo(path.c_str(), 0600), 0);
        return path;
    }
    QFileDialog* dialog() { return trace()->findChild<QFileDialog*>(); }
    void closeBox() {
        for (QMessageBox* const box : trace()->findChildren<QMessageBox*>()) {
            box->close();
        }
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    void ask(const std::string& what) {
        if (what == "exportAllCsv") {
            showTab(0);
            run("exportAllCsv");
        } else {
            showTab(what == "saveStatistics" ? 1 : 2);
            window.advance(1000);
            press(what.c_str());
        }
    }
};

TEST_F(InsightSavingTest, AnExportThatFailsIsToldAsOtherFilesAre) {
    run("exportAllCsv");
    chooseFile(pipe("pipe.csv"));
    EXPECT_NE(boxText().find("pipe.csv"), std::string::npos);
    EXPECT_EQ(boxAdvice(), "A folder, a device or a pipe holds no such file. Choose another name.");
    EXPECT_EQ(label("traceState").find("written"), std::string::npos);
}

TEST_F(InsightSavingTest, ATableThatCannotBeSavedIsToldAsOtherFilesAre) {
    showTab(1);
    press("saveStatistics");
    chooseFile(pipe("pipe.csv"));
    EXPECT_NE(boxText().find("pipe.csv"), std::string::npos);
}

TEST_F(InsightSavingTest, WithoutFileHandlesTheDialogsAreRefusedAndTheProgramGoesOn) {
    if (isSanitized) {
        GTEST_SKIP() << "the sanitizer needs a file handle itself";
    }
    for (const char* const what : {"exportAllCsv", "saveStatistics", "loadNames"}) {
        for (const std::size_t left : {0U, 3U, 10U}) {
            const FewHandles few(left);
            ask(what);
            EXPECT_EQ(dialog(), nullptr) << what << left;
            EXPECT_TRUE(boxText().starts_with("Run-time error '67':")) << what << boxText();
            closeBox();
        }
    }
    ask("saveStatistics");
    EXPECT_NE(dialog(), nullptr);
}

/// Between the dialog and its answer the handles may go, too.
TEST_F(InsightSavingTest, WithoutFileHandlesAChosenFileIsToldOf) {
    if (isSanitized) {
        GTEST_SKIP() << "the sanitizer needs a file handle itself";
    }
    for (const char* const what : {"exportAllCsv", "saveStatistics", "loadNames"}) {
        ask(what);
        std::ofstream(window.folder().file("names.csv")) << "W 0100,tank level\n";
        auto* const asked = dialog();
        ASSERT_NE(asked, nullptr) << what;
        {
            const NoMoreHandles none;
            emit asked->fileSelected(QString::fromStdString(window.folder().file("names.csv")));
        }
        EXPECT_NE(boxText().find("names.csv"), std::string::npos) << what << ": " << boxText();
        closeBox();
        asked->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

} // namespace
} // namespace varda::test
