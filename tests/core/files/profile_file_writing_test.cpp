#include "core/files/modVarda.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

namespace varda {
namespace {

struct Setting {
    std::string section;
    std::string key;
    std::string text;
};

/// A file, what is set in it, and the bytes that are written then.
struct Row {
    std::string name;
    std::string content;
    std::vector<Setting> settings;
    std::string expected;
};

void PrintTo(const Row& row, std::ostream* stream) { *stream << row.name; }

std::vector<Row> placeRows() {
    return {
        {"FirstValueOfAnEmptyFile", "", {{"S", "k", "v"}}, "[S]\r\nk=v\r\n"},
        {"ListsAreWrittenSectionBySection",
         "",
         {{"Information", "Total", "2"},
          {"Receive", "0", "A"},
          {"Send", "0", "B"},
          {"Receive", "1", "C"},
          {"Send", "1", "D"}},
         "[Information]\r\nTotal=2\r\n[Receive]\r\n0=A\r\n1=C\r\n[Send]\r\n0=B\r\n1=D\r\n"},
        {"ChangedValueStaysInItsPlace",
         "[S]\r\na=1\r\nk=2\r\nb=3\r\n",
         {{"S", "k", "9"}},
         "[S]\r\na=1\r\nk=9\r\nb=3\r\n"},
        {"ChangedValueKeepsTheSpellingOfItsKey",
         "[S]\r\n  ToTal =  2\r\n",
         {{"s", "total", "9"}},
         "[S]\r\nToTal=9\r\n"},
        {"EqualValueLeavesItsLineAlone", "[S]\r\n  k =  2 \r\n", {{"S", "k", "2"}}, "[S]\r\n  k =  2 \r\n"},
        {"QuotedValueIsReplacedByThePlainOne", "[S]\r\nk=\"2\"\r\n", {{"S", "k", "2"}}, "[S]\r\nk=2\r\n"},
        {"OtherLinesKeepBlanksCommentsAndNonsense",
         ";c\r\n\r\n junk \r\n[S] x\r\n ; d = e\r\n\tk = 1\t\r\n=\r\n[T\r\n",
         {{"S", "j", "2"}},
         ";c\r\n\r\n junk \r\n[S] x\r\n ; d = e\r\n\tk = 1\t\r\n=\r\n[T\r\nj=2\r\n"},
        {"NewKeyGoesToTheEndOfItsSection",
         "[S]\r\na=1\r\n[T]\r\nb=2\r\n",
         {{"S", "k", "v"}},
         "[S]\r\na=1\r\nk=v\r\n[T]\r\nb=2\r\n"},
        {"NewKeyStandsBeforeTheBlankLinesAtTheEndOfItsSection",
         "[S]\r\na=1\r\n\r\n \t\r\n[T]\r\nb=2\r\n",
         {{"S", "k", "v"}},
         "[S]\r\na=1\r\nk=v\r\n\r\n \t\r\n[T]\r\nb=2\r\n"},
        {"NewKeyStandsBehindTheCommentsAtTheEndOfItsSection",
         "[S]\r\na=1\r\n;c\r\n[T]\r\n",
         {{"S", "k", "v"}},
         "[S]\r\na=1\r\n;c\r\nk=v\r\n[T]\r\n"},
        {"NewKeyOfAnEmptySectionFollowsItsHeader",
         "[S]\r\n\r\n[T]\r\n",
         {{"S", "k", "v"}},
         "[S]\r\nk=v\r\n\r\n[T]\r\n"},
        {"NewKeysKeepTheirOrder",
         "[S]\r\na=1\r\n\r\n",
         {{"S", "c", "2"}, {"S", "b", "3"}},
         "[S]\r\na=1\r\nc=2\r\nb=3\r\n\r\n"},
        {"NewSectionGoesToTheEndOfTheFile",
         "[S]\r\na=1\r\n\r\n",
         {{"T", "k", "v"}},
         "[S]\r\na=1\r\n\r\n[T]\r\nk=v\r\n"},
        {"NewKeyOfTheLastSectionStaysAboveANewSection",
         "[S]\r\na=1\r\n",
         {{"T", "k", "v"}, {"S", "b", "2"}, {"T", "j", "w"}, {"S", "c", "3"}},
         "[S]\r\na=1\r\nb=2\r\nc=3\r\n[T]\r\nk=v\r\nj=w\r\n"},
    };
}

std::vector<Row> damagedFileRows() {
    return {
        {"FirstOfEqualKeysIsChanged", "[S]\r\nk=1\r\nk=2\r\n", {{"S", "k", "9"}}, "[S]\r\nk=9\r\nk=2\r\n"},
        {"FirstOfEqualSectionsIsChanged",
         "[S]\r\na=1\r\n[T]\r\n[s]\r\nk=2\r\n",
         {{"S", "k", "9"}},
         "[S]\r\na=1\r\nk=9\r\n[T]\r\n[s]\r\nk=2\r\n"},
        {"KeyWithoutEqualsSignGetsALineOfItsOwn",
         "[S]\r\nk\r\na=1\r\n",
         {{"S", "k", "v"}},
         "[S]\r\nk\r\na=1\r\nk=v\r\n"},
    };
}

std::vector<Row> byteRows() {
    return {
        {"LineFeedsBecomeCarriageReturnAndLineFeed",
         "[S]\n;c\n\nk=1\nb=2\n",
         {{"S", "k", "9"}},
         "[S]\r\n;c\r\n\r\nk=9\r\nb=2\r\n"},
        {"LineFeedsBecomeBothAlsoWithoutAChange", "[S]\nk=1\n", {}, "[S]\r\nk=1\r\n"},
        {"MissingLastLineEndIsAddedBeforeANewKey", "[S]\r\na=1", {{"S", "k", "v"}}, "[S]\r\na=1\r\nk=v\r\n"},
        {"MissingLastLineEndIsAddedToAChangedLine", "[S]\r\nk=1", {{"S", "k", "v"}}, "[S]\r\nk=v\r\n"},
        {"MissingLastLineEndIsAddedBeforeANewSection",
         "; only a comment",
         {{"S", "k", "v"}},
         "; only a comment\r\n[S]\r\nk=v\r\n"},
        {"ByteOrderMarkStays", "\xEF\xBB\xBF[S]\r\nk=1\r\n", {{"S", "k", "2"}}, "\xEF\xBB\xBF[S]\r\nk=2\r\n"},
        {"ByteOrderMarkAloneGetsNoLineOfItsOwn",
         "\xEF\xBB\xBF",
         {{"S", "k", "v"}},
         "\xEF\xBB\xBF[S]\r\nk=v\r\n"},
        {"ValueIsTrimmed", "", {{"S", "k", " \t v w \t"}}, "[S]\r\nk=v w\r\n"},
        {"NamesAreTrimmed", "", {{" S\t", "\tk ", "v"}}, "[S]\r\nk=v\r\n"},
        {"EmptyValue", "[S]\r\nk=1\r\n", {{"S", "k", ""}}, "[S]\r\nk=\r\n"},
        {"QuotesAreWrittenAsTheyStand", "", {{"S", "k", "\" v \""}}, "[S]\r\nk=\" v \"\r\n"},
        {"BytesAbove127AreWrittenAsTheyStand", "", {{"S", "k", "\xE4\xFF"}}, "[S]\r\nk=\xE4\xFF\r\n"},
        {"LineBreaksInAValueForgeNoLines", "", {{"S", "k", "a\r\n[T]\nj=b\n"}}, "[S]\r\nk=a  [T] j=b\r\n"},
        {"ZeroBytesInAValueBecomeBlanks", "", {{"S", "k", std::string("a\0b\0", 4)}}, "[S]\r\nk=a b\r\n"},
        {"LastOfSeveralChangesCounts",
         "[S]\r\nk=1\r\n",
         {{"S", "k", "22"}, {"S", "k", "3"}, {"S", "n", "4"}, {"S", "n", "55"}},
         "[S]\r\nk=3\r\nn=55\r\n"},
        {"KeysOfALargerListStay",
         "[Information]\r\nTotal=2\r\n[Receive]\r\n0=A\r\n1=B\r\n",
         {{"Information", "Total", "1"}, {"Receive", "0", "C"}},
         "[Information]\r\nTotal=1\r\n[Receive]\r\n0=C\r\n1=B\r\n"},
        {"KeysOfADuplicateSectionAreNotMovedByNewKeys",
         "[S]\r\n[S]\r\nk=1\r\n\r\n",
         {{"S", "k", "2"}},
         "[S]\r\nk=2\r\n[S]\r\nk=1\r\n\r\n"},
    };
}

class ProfileFileWriting : public testing::TestWithParam<Row> {};

TEST_P(ProfileFileWriting, GivesTheseBytes) {
    const Row& row = GetParam();
    ProfileFile file = ProfileFile::parse(row.content);
    for (const Setting& setting : row.settings) {
        WritePrivateProfileStringA(setting.section, setting.key, setting.text, file);
    }
    EXPECT_EQ(file.text(), row.expected);
    EXPECT_EQ(ProfileFile::parse(file.text()).text(), row.expected) << "written once more";
}

std::string nameOf(const testing::TestParamInfo<Row>& row) { return row.param.name; }

INSTANTIATE_TEST_SUITE_P(Places, ProfileFileWriting, testing::ValuesIn(placeRows()), nameOf);
INSTANTIATE_TEST_SUITE_P(DamagedFiles, ProfileFileWriting, testing::ValuesIn(damagedFileRows()), nameOf);
INSTANTIATE_TEST_SUITE_P(Bytes, ProfileFileWriting, testing::ValuesIn(byteRows()), nameOf);

TEST(ProfileFileWritingNames, ThatCouldNotBeFoundAgainAreRefused) {
    ProfileFile file;
    const std::vector<Setting> refused = {
        {"S", "", ""},    {"S", " ", ""},    {"S", "a=b", ""},  {"S", ";k", ""},
        {"S", "[k", ""},  {"S", "a\nb", ""}, {"S", "a\rb", ""}, {"S", std::string("a\0b", 3), ""},
        {"a]b", "k", ""}, {"a\nb", "k", ""}, {"a\rb", "k", ""}, {std::string("a\0b", 3), "k", ""}};
    for (const Setting& setting : refused) {
        try {
            file.setValue(setting.section, setting.key, "v");
            ADD_FAILURE() << "taken: [" << setting.section << "] " << setting.key;
        } catch (const RuntimeError& error) {
            EXPECT_EQ(error.number(), 5);
        }
    }
    EXPECT_EQ(file.text(), "");
}

TEST(ProfileFileWritingMemory, AValueIsReadBackBeforeTheFileIsSaved) {
    ProfileFile file = ProfileFile::parse("[S]\r\nk=1\r\n");
    file.setValue("S", "k", "2");
    file.setValue("T", "n", "'3'");
    EXPECT_EQ(file.value("s", "K", "", 1024), "2");
    EXPECT_EQ(file.value("t", "N", "", 1024), "3");
}

TEST(ProfileFileWritingMemory, ACopyIsIndependent) {
    ProfileFile file = ProfileFile::parse("[S]\r\nk=1\r\n");
    ProfileFile copy = file;
    copy.setValue("S", "k", "2");
    EXPECT_EQ(file.text(), "[S]\r\nk=1\r\n");
    EXPECT_EQ(copy.text(), "[S]\r\nk=2\r\n");
}

} // namespace
} // namespace varda
