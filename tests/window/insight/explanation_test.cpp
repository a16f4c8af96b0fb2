#include "window/insight/field_model.h"
#include "window/insight/hex_view.h"
#include "window/insight/insight_fixture.h"

#include <QPushButton>
#include <QTextBlock>

#include <algorithm>

namespace varda::test {
namespace {

class ExplanationTest : public InsightTest {
protected:
    void fill() {
        openPort();
        chooseWord(57);
        exchange(wordOne);
        settle();
    }
    QTableView* fields() { return find<QTableView>("fieldTable"); }
    HexView* hex() { return find<HexView>("hexBytes"); }
    std::string field(int row, int column) { return cellText(fields(), row, column); }
    /// The row of a field by its name.
    int rowOf(const std::string& name) {
        for (int row = 0; row < fields()->model()->rowCount(); ++row) {
            if (field(row, FieldModel::Name) == name) {
                return row;
            }
        }
        ADD_FAILURE() << "no field " << name;
        return -1;
    }
    void clickByte(int place) {
        const QTextBlock line = hex()->document()->findBlockByNumber(place / 16);
        QTextCursor cursor(line);
        cursor.setPosition(line.position() + 6 + place % 16 * 3);
        const QPoint left = hex()->cursorRect(cursor).center();
        QTest::mouseClick(hex()->viewport(), Qt::LeftButton, {}, left + QPoint(2, 0));
    }
};

TEST_F(ExplanationTest, AsksForALineWhileNoneIsChosen) {
    EXPECT_NE(label("explanationTitle").find("Choose a line"), std::string::npos);
    EXPECT_EQ(fields()->model()->rowCount(), 0);
}

TEST_F(ExplanationTest, AnAnswerBehindNoiseIsDecodedAsTheTraceNamesIt) {
    openPort();
    chooseWord(57);
    send();
    window.farEnd().deliver({0xF7});
    window.advance(40);
    window.farEnd().deliver(wordOne);
    window.advance(300);
    settle();
    ASSERT_EQ(cell(3, TraceColumn::Kind), "answer to word read");
    choose(3);
    EXPECT_EQ(label("explanationSentence"),
              "! Dropped: 9 bytes, 1 more than were awaited. Part 2 of 2: bytes 1 to "
              "8 of the 9 that were read together.");
    EXPECT_EQ(field(rowOf("DA"), FieldModel::Place), "0");
    EXPECT_EQ(field(rowOf("DA"), FieldModel::Value), "station 255");
    EXPECT_EQ(field(rowOf("SA"), FieldModel::Value), "station 255");
    EXPECT_EQ(field(rowOf("W 0057"), FieldModel::Value), "1234h = 4660");
    choose(2);
    EXPECT_EQ(field(rowOf("DA"), FieldModel::Value), "station 247") << "the noise, with all that was read";
}

TEST_F(ExplanationTest, AnAnswerIsDecodedWithItsRequest) {
    fill();
    choose(2);
    EXPECT_EQ(label("explanationSentence"), "Taken: it has the 8 bytes that were awaited.");
    const int value = rowOf("W 0057");
    EXPECT_EQ(field(value, FieldModel::Place), "4 .. 5");
    EXPECT_EQ(field(value, FieldModel::Value), "1234h = 4660");
    EXPECT_EQ(field(value, FieldModel::Decimal), "4660");
    EXPECT_EQ(field(value, FieldModel::Signed), "4660");
    EXPECT_EQ(field(value, FieldModel::Hex), "1234h");
    EXPECT_EQ(field(value, FieldModel::Binary), "0001 0010 0011 0100");
    EXPECT_EQ(field(rowOf("DA"), FieldModel::Value), "station 255");
}

TEST_F(ExplanationTest, AFieldMarksItsBytesAndAByteItsField) {
    fill();
    choose(2);
    fields()->setCurrentIndex(fields()->model()->index(rowOf("W 0057"), 0));
    EXPECT_EQ(hex()->highlighted(), (ByteRange{4, 2}));
    clickByte(7);
    EXPECT_EQ(fields()->currentIndex().row(), rowOf("CRC"));
    EXPECT_EQ(hex()->highlighted(), (ByteRange{6, 2}));
    QTest::keyClick(hex(), Qt::Key_Home);
    EXPECT_EQ(fields()->currentIndex().row(), rowOf("DA"));
}

TEST_F(ExplanationTest, FlawsAreNamedAndMarkedBySigns) {
    openPort();
    chooseWord(57);
    Bytes damaged = wordOne;
    damaged.back() ^= 1;
    exchange(damaged);
    settle();
    choose(2);
    EXPECT_TRUE(label("explanationSentence").starts_with("! Taken"));
    EXPECT_NE(field(rowOf("! Flaw"), FieldModel::Value).find("The check is"), std::string::npos);
    EXPECT_GE(rowOf("! CRC"), 0);
    const auto marks = hex()->extraSelections();
    EXPECT_TRUE(std::ranges::any_of(marks, [](const QTextEdit::ExtraSelection& mark) {
        return mark.format.underlineStyle() == QTextCharFormat::WaveUnderline;
    }));
}

TEST_F(ExplanationTest, ACutFrameIsExplainedAsFarAsItGoes) {
    openPort();
    chooseWord(57);
    exchange({0xFF, 0xFF, 0xA3, 0x02, 0x34});
    settle();
    choose(2);
    EXPECT_EQ(field(rowOf("! W 0057"), FieldModel::Value), "its first byte, 34h");
    clickByte(4);
    EXPECT_EQ(fields()->currentIndex().row(), rowOf("! W 0057"));
}

TEST_F(ExplanationTest, WhatBecomesOfALineLaterIsSaidThen) {
    openPort();
    chooseWord(57);
    send();
    settle();
    choose(1);
    const std::string before = label("explanationSentence");
    fields()->setCurrentIndex(fields()->model()->index(rowOf("Count"), 0));
    window.farEnd().deliver(wordOne);
    window.advance(300);
    EXPECT_NE(label("explanationSentence"), before);
    EXPECT_EQ(fields()->currentIndex().row(), rowOf("Count")) << "the field that was chosen";
}

TEST_F(ExplanationTest, ARequestLeadsToItsAnswerAndBack) {
    fill();
    choose(1);
    auto* const partner = find<QPushButton>("goToPartner");
    ASSERT_TRUE(partner->isVisible());
    EXPECT_EQ(partner->text(), QStringLiteral("Go to its answer"));
    partner->click();
    EXPECT_EQ(find<QTableView>("traceTable")->currentIndex().row(), 2);
    EXPECT_EQ(partner->text(), QStringLiteral("Go to its request"));
    choose(0);
    EXPECT_FALSE(partner->isVisible());
    EXPECT_EQ(fields()->model()->rowCount(), 0) << "an event has no bytes";
}

TEST_F(ExplanationTest, TheFrameUnderTheCaretOfAPageIsExplained) {
    openPort();
    chooseWord(57);
    auto* const frame = window.find<QPlainTextEdit>("txtSendRData");
    QApplication::setActiveWindow(&window.window());
    frame->setFocus();
    ASSERT_TRUE(frame->hasFocus());
    EXPECT_NE(label("explanationTitle").find("as it stands on the page"), std::string::npos);
    QTextCursor caret = frame->textCursor();
    caret.setPosition(13); // in the address
    frame->setTextCursor(caret);
    EXPECT_EQ(fields()->currentIndex().row(), rowOf("Address"));
    EXPECT_EQ(field(rowOf("Address"), FieldModel::Value), "0239h: W 0057");
}

TEST_F(ExplanationTest, AnAnswerOnAPageHasTheRegistersOfItsRequest) {
    fill();
    auto* const frame = window.find<QPlainTextEdit>("txtReceiveRData");
    chooseWord(58); // is not what was asked for
    QApplication::setActiveWindow(&window.window());
    frame->setFocus();
    EXPECT_GE(rowOf("W 0057"), 0);
}

TEST_F(ExplanationTest, ALineThatWasChosenBeforeIsExplainedAgainByAClick) {
    fill();
    choose(2);
    QApplication::setActiveWindow(&window.window());
    window.find<QPlainTextEdit>("txtSendRData")->setFocus();
    EXPECT_GE(rowOf("Address"), 0);
    choose(2);
    EXPECT_GE(rowOf("W 0057"), 0);
}

TEST(FieldModelTest, TwoFramesOfABurstStandBelowOneAnother) {
    FieldModel model(noNames(), nullptr);
    const Bytes sound = checked({1, 2, 0x23, 3, 0, 2, 1});
    Bytes twice = sound;
    twice.insert(twice.end(), sound.begin(), sound.end());
    model.showFrames(twice, {});
    int frames = 0;
    for (int row = 0; row < model.rowCount(); ++row) {
        frames += model.index(row, FieldModel::Name).data().toString() == QLatin1String("Frame") ? 1 : 0;
    }
    EXPECT_EQ(frames, 2);
    for (std::size_t byte = 0; byte < twice.size(); ++byte) {
        const auto row = model.rowOf(byte);
        ASSERT_TRUE(row.has_value()) << byte;
        const ByteRange bytes = model.bytesOf(*row);
        EXPECT_TRUE(byte >= bytes.begin && byte < bytes.begin + bytes.length) << byte;
    }
    EXPECT_FALSE(model.rowOf(twice.size()).has_value());
}

} // namespace
} // namespace varda::test
