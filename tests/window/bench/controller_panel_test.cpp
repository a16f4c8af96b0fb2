#include "core/protocol/hex_text.h"
#include "window/bench/bench_fixture.h"
#include "window/bench/memory_model.h"
#include "window/bench/unknown_model.h"

#include <QPlainTextEdit>
#include <QTabBar>

namespace varda::test {
namespace {

class ControllerPanelTest : public BenchTest {
protected:
    ControllerPanelTest() : BenchTest(ControllerTab) {}

    static constexpr const char* memory = "memoryTable";
    static constexpr const char* unknown = "unknownTable";
    static constexpr int wordsBase = 0x200;

    void showKind(const char* kind) {
        auto* const bar = find<QTabBar>("memoryKinds");
        for (int tab = 0; tab < bar->count(); ++tab) {
            if (bar->tabText(tab) == QLatin1String(kind)) {
                bar->setCurrentIndex(tab);
            }
        }
    }
    void answerFromMemory() { press("answerFromMemory"); }

    const Bytes readTwo = checked({0xFF, 0xFF, 0x23, 0x03, 0x00, 0x02, 0x02});
    const Bytes writeOne = checked({0xFF, 0xFF, 0x24, 0x04, 0x00, 0x02, 0x34, 0x12});
    const Bytes noise = {1, 2, 3, 4, 5, 6, 7, 8, 9};
};

TEST_F(ControllerPanelTest, OffTheSimulatorIsSilentAsEver) {
    controller.setWord(wordsBase, 0x1234);
    simulate();
    EXPECT_FALSE(find<QAbstractButton>("answerFromMemory")->isChecked());
    EXPECT_TRUE(ask(readTwo).empty());
    EXPECT_EQ(window.text("txtSimRP"), hexRun(readTwo));
    EXPECT_EQ(window.text("txtSimSP"), "");
    EXPECT_TRUE(ask(writeOne).empty());
    EXPECT_EQ(controller.word(wordsBase), 0x1234);
}

TEST_F(ControllerPanelTest, RequestsThatNoPairAnswersAreAnsweredFromMemory) {
    controller.setWord(wordsBase, 0x1234);
    controller.setWord(wordsBase + 1, 0xABCD);
    simulate();
    answerFromMemory();
    const Bytes answer = checked({0xFF, 0xFF, 0xA3, 0x04, 0x34, 0x12, 0xCD, 0xAB});
    EXPECT_EQ(ask(readTwo), std::vector<Bytes>{answer});
    EXPECT_EQ(window.text("txtSimRP"), hexRun(readTwo));
    EXPECT_EQ(window.text("txtSimSP"), hexRun(answer));
    EXPECT_EQ(window.selectedLine("lstSimReceive"), -1);
    EXPECT_EQ(window.find<QPlainTextEdit>("txtSimSP")->toPlainText().size(), 24 - 4);
    ask(checked({0xFF, 0xFF, 0x24, 0x04, 0x00, 0x02, 0x78, 0x56}));
    EXPECT_EQ(controller.word(wordsBase), 0x5678);
    settle();
    showKind("W");
    EXPECT_EQ(cell(memory, 0, MemoryModel::Hex), "5678");
    answerFromMemory();
    EXPECT_TRUE(ask(readTwo).empty());
}

TEST_F(ControllerPanelTest, AnAnswerThatThePortRefusesIsNoAnswer) {
    simulate();
    answerFromMemory();
    ask(readTwo);
    const std::string answered = window.text("txtSimSP");
    window.farEnd().refuseWrites(true);
    EXPECT_TRUE(ask(readTwo).empty());
    settle();
    EXPECT_EQ(cell(unknown, 0, UnknownModel::Count), "2");
    EXPECT_EQ(cell(unknown, 0, UnknownModel::Answered), "no; the port refused 1");
    EXPECT_EQ(window.text("txtSimSP"), answered) << "what was sent last";
    EXPECT_FALSE(window.find<QPlainTextEdit>("txtSimSP")->extraSelections().isEmpty()) << "in grey";
    window.farEnd().refuseWrites(false);
    EXPECT_EQ(ask(readTwo).size(), 1U);
    settle();
    EXPECT_EQ(cell(unknown, 0, UnknownModel::Answered), "from memory; the port refused 1");
}

TEST_F(ControllerPanelTest, APreparedPairComesFirst) {
    writeFile("pairs.ini",
              "[Information]\nTotal=1\n[Receive]\n0=" + hexRun(readTwo) + "\n[Send]\n0=FFFFA3\n");
    simulate();
    answerFromMemory();
    window.click("cmdLoadSimPacket");
    window.chooseFile("pairs.ini");
    ASSERT_EQ(window.entryCount("lstSimReceive"), 1);
    EXPECT_EQ(ask(readTwo), (std::vector<Bytes>{{0xFF, 0xFF, 0xA3}}));
    EXPECT_EQ(window.selectedLine("lstSimReceive"), 0);
    settle();
    EXPECT_EQ(rows(unknown), 0);
}

TEST_F(ControllerPanelTest, TheMemoryIsShownAndEditedInPlace) {
    showKind("W");
    EXPECT_EQ(rows(memory), 2048);
    EXPECT_EQ(cell(memory, 1, MemoryModel::Register), "W 0001");
    EXPECT_TRUE(edit(memory, 1, MemoryModel::Decimal, "4660"));
    EXPECT_EQ(controller.word(wordsBase + 1), 0x1234);
    EXPECT_EQ(cell(memory, 1, MemoryModel::Hex), "1234");
    EXPECT_TRUE(edit(memory, 1, MemoryModel::Hex, "8001"));
    EXPECT_EQ(cell(memory, 1, MemoryModel::Decimal), "32769");
    EXPECT_TRUE(isTicked(memory, 1, MemoryModel::FirstBit)) << "bit 15";
    EXPECT_TRUE(isTicked(memory, 1, MemoryModel::columns - 1)) << "bit 0";
    tick(memory, 1, MemoryModel::columns - 2);
    tick(memory, 1, MemoryModel::FirstBit, false);
    EXPECT_EQ(controller.word(wordsBase + 1), 3);
    EXPECT_TRUE(edit(memory, 1, MemoryModel::Decimal, "1A2Bh"));
    EXPECT_EQ(controller.word(wordsBase + 1), 0x1A2B);
    showKind("SR");
    EXPECT_EQ(cell(memory, 0, MemoryModel::Register), "SR 000");
    EXPECT_EQ(rows(memory), 512);
}

TEST_F(ControllerPanelTest, WhatIsNoWordIsRefused) {
    showKind("W");
    for (const char* const text : {"", "65536", "-1", "many", "12345h"}) {
        EXPECT_FALSE(edit(memory, 0, MemoryModel::Decimal, text)) << text;
        EXPECT_EQ(label("memoryState"),
                  '"' + std::string(text) + "\" is no word: 0 to 65535, or 0h to FFFFh.");
    }
    EXPECT_FALSE(edit(memory, 0, MemoryModel::Hex, "12345"));
    EXPECT_EQ(controller.memory(), ControllerMemory());
    EXPECT_TRUE(edit(memory, 0, MemoryModel::Decimal, "7"));
    EXPECT_EQ(label("memoryState"), "");
}

TEST_F(ControllerPanelTest, WhatIsTypedIsNotWrittenOverByWhatComes) {
    simulate();
    answerFromMemory();
    showKind("W");
    auto* const table = find<QTableView>(memory);
    table->setCurrentIndex(table->model()->index(0, MemoryModel::Decimal));
    table->edit(table->currentIndex());
    auto* const editor = table->viewport()->findChild<QLineEdit*>();
    ASSERT_NE(editor, nullptr);
    editor->setText(QStringLiteral("77"));
    ask(writeOne);
    settle();
    EXPECT_EQ(controller.word(wordsBase), 0x1234);
    EXPECT_EQ(editor->text(), QStringLiteral("77"));
    QTest::keyClick(editor, Qt::Key_Return);
    QCoreApplication::processEvents(); // which hands it over
    EXPECT_EQ(controller.word(wordsBase), 77);
}

TEST_F(ControllerPanelTest, TheMemoryGoesIntoAFileAndComesBack) {
    controller.setWord(wordsBase, 0x1234);
    controller.setWord(0, 1);
    const ControllerMemory before = controller.memory();
    press("saveMemory");
    chooseFile("memory.csv");
    EXPECT_EQ(label("memoryState"), "Saved: memory.csv");
    EXPECT_EQ(readFile("memory.csv"), memoryText(before));
    controller.setMemory({});
    press("loadMemory");
    chooseFile("memory.csv");
    EXPECT_EQ(controller.memory(), before);
    EXPECT_EQ(label("memoryState"), "2 words from memory.csv");
    EXPECT_EQ(cell(memory, 0, MemoryModel::Decimal), "1");
}

TEST_F(ControllerPanelTest, AFileThatIsNoMemoryLeavesItAsItIs) {
    controller.setWord(wordsBase, 7);
    writeFile("bad.csv", "W 0000,1\nW 0001,much\n");
    press("loadMemory");
    chooseFile("bad.csv");
    ASSERT_NE(box(), nullptr);
    EXPECT_NE(box()->text().toStdString().find("bad.csv\" is no memory of a controller."), std::string::npos);
    EXPECT_EQ(box()->informativeText().toStdString(),
              "Line 2: \"much\" is no value for W 0001. Write 0 to 65535, or 0h to FFFFh.");
    EXPECT_EQ(controller.word(wordsBase), 7);
}

TEST_F(ControllerPanelTest, UnknownRequestsAreListedWithTheirCount) {
    simulate();
    ask(readTwo);
    ask(noise);
    ask(readTwo);
    settle();
    ASSERT_EQ(rows(unknown), 2);
    EXPECT_EQ(cell(unknown, 0, UnknownModel::Count), "2");
    EXPECT_EQ(cell(unknown, 0, UnknownModel::Request), hexSpaced(readTwo));
    EXPECT_EQ(cell(unknown, 0, UnknownModel::Words), "word read, W 0000 .. W 0001");
    EXPECT_EQ(cell(unknown, 0, UnknownModel::Answered), "no");
    answerFromMemory();
    ask(readTwo);
    settle();
    EXPECT_EQ(cell(unknown, 0, UnknownModel::Count), "3");
    EXPECT_EQ(cell(unknown, 0, UnknownModel::Answered), "from memory");
    press("clearUnknown");
    EXPECT_EQ(rows(unknown), 0);
}

TEST_F(ControllerPanelTest, AKeyMakesAPairWithTheAnswerThatTheMemoryGives) {
    controller.setWord(wordsBase, 0x1234);
    simulate();
    ask(writeOne);
    ask(readTwo);
    settle();
    const ControllerMemory before = controller.memory();
    chooseRow(unknown, 1);
    focus(unknown);
    QTest::keyClick(find(unknown), Qt::Key_Return);
    EXPECT_EQ(window.entryCount("lstSimReceive"), 1);
    EXPECT_EQ(window.entry("lstSimReceive", 0), hexRun(readTwo));
    EXPECT_EQ(window.entry("lstSimSend", 0),
              hexRun(checked({0xFF, 0xFF, 0xA3, 0x04, 0x34, 0x12, 0x00, 0x00})));
    EXPECT_TRUE(window.find("cmdSaveSimPacket")->isEnabled()) << "as where it was typed";
    EXPECT_EQ(label("unknownState"), "Pair 1 was made.");
    EXPECT_EQ(rows(unknown), 1);
    chooseRow(unknown, 0);
    press("makePair");
    EXPECT_EQ(window.entryCount("lstSimReceive"), 2);
    EXPECT_EQ(controller.memory(), before) << "a write has not been carried out";
    EXPECT_EQ(ask(readTwo).size(), 1U);
}

TEST_F(ControllerPanelTest, NoPairIsMadeOfWhatTheMemoryDoesNotAnswer) {
    simulate();
    ask(noise);
    settle();
    press("makePair");
    EXPECT_EQ(label("unknownState"), "Choose a request.");
    chooseRow(unknown, 0);
    press("makePair");
    EXPECT_EQ(label("unknownState"), "The memory gives no answer to it.");
    EXPECT_EQ(window.entryCount("lstSimReceive"), 0);
    EXPECT_EQ(rows(unknown), 1);
}

TEST_F(ControllerPanelTest, APairThatCameMeanwhileIsNotMadeTwice) {
    simulate();
    ask(readTwo);
    writeFile("pairs.ini",
              "[Information]\nTotal=1\n[Receive]\n0=" + hexRun(readTwo) + "\n[Send]\n0=FFFFA3\n");
    window.click("cmdLoadSimPacket");
    window.chooseFile("pairs.ini");
    settle();
    chooseRow(unknown, 0);
    press("makePair");
    EXPECT_EQ(label("unknownState"), "A pair answers it by now.");
    EXPECT_EQ(window.entryCount("lstSimReceive"), 1);
    EXPECT_EQ(rows(unknown), 0);
}

/// In another mode the simulation's buttons are off.
TEST_F(ControllerPanelTest, APairMadeInAnotherModeSwitchesNoButtonOfThePage) {
    simulate();
    ask(readTwo);
    window.click("optMode_0");
    settle();
    chooseRow(unknown, 0);
    press("makePair");
    EXPECT_EQ(window.entryCount("lstSimReceive"), 1);
    for (const char* const button : {"cmdSaveSimPacket", "cmdSimDelete", "cmdSimClear"}) {
        EXPECT_FALSE(window.find(button)->isEnabled()) << button;
    }
}

} // namespace
} // namespace varda::test
