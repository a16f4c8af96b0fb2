#include "core/files/modVarda.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

namespace varda {
namespace {

using namespace std::string_literals;

/// One hand-made file and what one look-up in it gives. "?" is the default of every look-up.
struct Row {
    std::string name;
    std::string content;
    std::string section = "S";
    std::string key = "k";
    std::string expected;
    std::size_t size = 1024; ///< of the buffer
};

void PrintTo(const Row& row, std::ostream* stream) { *stream << row.name; }

std::vector<Row> nameRows() {
    return {
        {"PlainValue", "[S]\r\nk=v\r\n", "S", "k", "v"},
        {"SectionCaseIsIgnored", "[sEnD]\r\nk=v\r\n", "SeNd", "k", "v"},
        {"KeyCaseIsIgnored", "[S]\r\nToTaL=3\r\n", "S", "tOtAl", "3"},
        {"CaseOfBytesAbove127Counts", "[S]\r\n\xC4=v\r\n", "S", "\xE4", "?"},
        {"SameBytesAbove127AreTheSameName", "[S]\r\n\xC4=v\r\n", "S", "\xC4", "v"},
        {"CharactersNextToTheLettersHaveNoCase", "[S]\r\n@=1\r\n`=2\r\n", "S", "`", "2"},
        {"BlanksBeforeTheHeader", "  [S]\r\nk=v\r\n", "S", "k", "v"},
        {"BlanksBehindTheHeader", "[S] \t \r\nk=v\r\n", "S", "k", "v"},
        {"BlanksInsideTheBrackets", "[ \tS ]\r\nk=v\r\n", "S", "k", "v"},
        {"BlanksInTheMiddleOfASectionNameStay", "[a b]\r\nk=v\r\n", "a b", "k", "v"},
        {"BlanksRoundTheAskedSection", "[S]\r\nk=v\r\n", " S ", "k", "v"},
        {"BlanksBeforeTheKey", "[S]\r\n \tk=v\r\n", "S", "k", "v"},
        {"BlanksBehindTheKey", "[S]\r\nk \t=v\r\n", "S", "k", "v"},
        {"BlanksInTheMiddleOfAKeyStay", "[S]\r\na b=v\r\n", "S", "a b", "v"},
        {"BlanksRoundTheAskedKey", "[S]\r\nk=v\r\n", "S", "\tk ", "v"},
        {"TextBehindTheHeaderMeansNothing", "[S] ; comment ]\r\nk=v\r\n", "S", "k", "v"},
        {"HeaderEndsAtItsFirstBracket", "[a]b]\r\nk=v\r\n", "a", "k", "v"},
        {"EmptySectionName", "[]\r\nk=v\r\n", "", "k", "v"},
        {"SectionNameThatLooksLikeAKey", "[a=b]\r\nk=v\r\n", "a=b", "k", "v"},
        {"HeaderWithoutEndIsNoHeader", "[T]\r\nk=1\r\n[S\r\nk=v\r\n", "S", "k", "?"},
        {"LinesBelowAHeaderWithoutEndStayInTheSectionAbove", "[S]\r\n[T\r\nk=v\r\n", "S", "k", "v"},
        {"HeaderWithoutEndIsNoKeyEither", "[S]\r\n[k=v\r\n", "S", "[k", "?"},
    };
}

std::vector<Row> valueRows() {
    return {
        {"BlanksBeforeTheValue", "[S]\r\nk= \tv\r\n", "S", "k", "v"},
        {"BlanksBehindTheValue", "[S]\r\nk=v \t\r\n", "S", "k", "v"},
        {"BlanksInTheMiddleOfAValueStay", "[S]\r\nk=01 02  03 \r\n", "S", "k", "01 02  03"},
        {"DoubleQuotesAreStripped", "[S]\r\nk=\"v\"\r\n", "S", "k", "v"},
        {"SingleQuotesAreStripped", "[S]\r\nk='v'\r\n", "S", "k", "v"},
        {"BlanksInsideQuotesStay", "[S]\r\nk= \"  v \" \r\n", "S", "k", "  v "},
        {"OnePairOfQuotesOnly", "[S]\r\nk=\"\"v\"\"\r\n", "S", "k", "\"v\""},
        {"QuotesOfTheOtherKindInsideStay", "[S]\r\nk=\"'v'\"\r\n", "S", "k", "'v'"},
        {"QuotesThatDoNotMatchStay", "[S]\r\nk=\"v'\r\n", "S", "k", "\"v'"},
        {"OpeningQuoteAloneStays", "[S]\r\nk=\"v\r\n", "S", "k", "\"v"},
        {"ClosingQuoteAloneStays", "[S]\r\nk=v\"\r\n", "S", "k", "v\""},
        {"OneQuoteIsNoPair", "[S]\r\nk=\"\r\n", "S", "k", "\""},
        {"EmptyQuotesAreAnEmptyValue", "[S]\r\nk=\"\"\r\n", "S", "k", ""},
        {"TextBehindClosingQuoteKeepsBoth", "[S]\r\nk=\"v\" x\r\n", "S", "k", "\"v\" x"},
        {"SemicolonBehindAValueIsPartOfIt", "[S]\r\nk=v; x\r\n", "S", "k", "v; x"},
        {"BlankAndSemicolonBehindAValueArePartOfIt", "[S]\r\nk=v ; x\r\n", "S", "k", "v ; x"},
        {"SemicolonCanBeginAValue", "[S]\r\nk=;v\r\n", "S", "k", ";v"},
        {"HashBehindAValueIsPartOfIt", "[S]\r\nk=v # x\r\n", "S", "k", "v # x"},
        {"FurtherEqualsSignsArePartOfTheValue", "[S]\r\nk=a=b==\r\n", "S", "k", "a=b=="},
        {"BracketsInAValue", "[S]\r\nk=[T]\r\n", "S", "k", "[T]"},
        {"BackslashesStay", "[S]\r\nk=a\\nb\\\r\n", "S", "k", "a\\nb\\"},
        {"PercentSignsStay", "[S]\r\nk=%41%\r\n", "S", "k", "%41%"},
        {"EmptyValueIsNotTheDefault", "[S]\r\nk=\r\n", "S", "k", ""},
        {"BlankValueIsEmpty", "[S]\r\nk= \t \r\n", "S", "k", ""},
        {"BytesAbove127AreUnchanged", "[S]\r\nk=\xE4\xFF\x80\r\n", "S", "k", "\xE4\xFF\x80"},
        {"NoBreakSpaceIsNoBlank", "[S]\r\nk=\xA0v\xA0\r\n", "S", "k", "\xA0v\xA0"},
        {"Utf8IsUnchanged", "[S]\r\nk=\xC3\xA4\r\n", "S", "k", "\xC3\xA4"},
        {"ControlCharactersInAValueStay", "[S]\r\nk=a\x01\x1B\tb\r\n", "S", "k", "a\x01\x1B\tb"},
        {"CutToTheSizeLessTheTerminator", "[S]\r\nk=abcdef\r\n", "S", "k", "abc", 4},
        {"ValueThatJustFits", "[S]\r\nk=abcdef\r\n", "S", "k", "abcdef", 7},
        {"CutComesAfterTheQuotesWereStripped", "[S]\r\nk=\"abcdef\"\r\n", "S", "k", "abc", 4},
        {"LongValueIsCutTo1023", "[S]\r\nk=" + std::string(3000, 'F') + "\r\n", "S", "k",
         std::string(1023, 'F')},
        {"ValueOf1023IsWhole", "[S]\r\nk=" + std::string(1023, 'F') + "\r\n", "S", "k",
         std::string(1023, 'F')},
        {"SizeOneHoldsTheTerminatorAlone", "[S]\r\nk=v\r\n", "S", "k", "", 1},
        {"SizeZeroHoldsNothing", "[S]\r\nk=v\r\n", "S", "k", "", 0},
        {"DefaultIsCutAsWell", "[S]\r\n", "S", "k", "", 1},
    };
}

std::vector<Row> lineRows() {
    return {
        {"EmptyFile", "", "S", "k", "?"},
        {"MissingSection", "[T]\r\nk=v\r\n", "S", "k", "?"},
        {"MissingKey", "[S]\r\nj=v\r\n", "S", "k", "?"},
        {"KeyOfAnotherSection", "[S]\r\nj=v\r\n[T]\r\nk=v\r\n", "S", "k", "?"},
        {"KeyAboveTheFirstHeader", "k=v\r\n[S]\r\n", "", "k", "?"},
        {"CommentIsNoKey", "[S]\r\n;k=v\r\n", "S", "k", "?"},
        {"CommentIsNoKeyUnderItsOwnText", "[S]\r\n;k=v\r\n", "S", ";k", "?"},
        {"CommentBehindBlanks", "[S]\r\n  ;k=1\r\nk=2\r\n", "S", "k", "2"},
        {"CommentIsNoHeader", "[S]\r\n;[T]\r\nk=v\r\n", "S", "k", "v"},
        {"HashIsNoComment", "[S]\r\n#k=v\r\n", "S", "#k", "v"},
        {"LineWithoutEqualsSignMeansNothing", "[S]\r\nk\r\n", "S", "k", "?"},
        {"LineWithoutEqualsSignDoesNotHideALaterKey", "[S]\r\nk\r\nk=v\r\n", "S", "k", "v"},
        {"LineWithoutKeyMeansNothing", "[S]\r\n =v\r\n", "S", "", "?"},
        {"BlankLinesMeanNothing", "\r\n[S]\r\n\r\n \t\r\nk=v\r\n", "S", "k", "v"},
        {"FirstOfEqualKeysCounts", "[S]\r\nk=1\r\nK=2\r\n", "S", "k", "1"},
        {"FirstOfEqualKeysCountsAlsoWhenEmpty", "[S]\r\nk=\r\nk=2\r\n", "S", "k", ""},
        {"FirstOfEqualSectionsCounts", "[S]\r\nk=1\r\n[s]\r\nk=2\r\n", "S", "k", "1"},
        {"SecondOfEqualSectionsAddsNoKeys", "[S]\r\nj=1\r\n[T]\r\n[S]\r\nk=2\r\n", "S", "k", "?"},
        {"SecondOfEqualSectionsEndsTheOneAbove", "[S]\r\n[T]\r\n[S]\r\nk=2\r\n", "T", "k", "?"},
        {"LineFeedsAlone", "[S]\nk=v\n", "S", "k", "v"},
        {"LineEndsOfBothKinds", "[S]\r\nj=1\nk=v\r\n", "S", "k", "v"},
        {"DoubledCarriageReturns", "[S]\r\r\nk=v\r\r\n", "S", "k", "v"},
        {"CarriageReturnAloneIsNoLineEnd", "[S]\nk=a\rj=b\n", "S", "j", "?"},
        {"MissingLastLineEndBehindAValue", "[S]\r\nk=v", "S", "k", "v"},
        {"MissingLastLineEndBehindAHeader", "[S]", "S", "k", "?"},
        {"CarriageReturnAsTheLastByte", "[S]\r\nk=v\r", "S", "k", "v"},
        {"Utf8ByteOrderMarkBeforeAHeader", "\xEF\xBB\xBF[S]\r\nk=v\r\n", "S", "k", "v"},
        {"ByteOrderMarkAlone", "\xEF\xBB\xBF", "S", "k", "?"},
        {"HalfAByteOrderMarkIsText", "\xEF\xBB[S]\r\nk=v\r\n", "S", "k", "?"},
        {"ZeroByteMakesItNoText", "[S]\r\nk=v\r\n\0"s, "S", "k", "?"},
        {"SixteenBitTextIsNoText", "[\0S\0]\0\n\0k\0=\0v\0"s, "S", "k", "?"},
        {"BinaryJunk", "\x7F"s + "ELF\x02\x01\xFF]=[[=\n]\n=;[\n\x80=", "S", "k", "?"},
        {"ReadingDoesNotDependOnTheOrderOfLines", "[T]\r\nk=1\r\n[S]\r\nk=v\r\nTotal=1\r\n", "S", "k", "v"},
        {"LongKey", "[S]\r\n" + std::string(5000, 'x') + "=v\r\n", "S", std::string(5000, 'X'), "v"},
        {"ManyEqualsSigns", "[S]\r\n" + std::string(5000, '=') + "\r\nk=v\r\n", "S", "k", "v"},
    };
}

class ProfileFileRules : public testing::TestWithParam<Row> {};

TEST_P(ProfileFileRules, HoldForAHandMadeFile) {
    const Row& row = GetParam();
    const ProfileFile file = ProfileFile::parse(row.content);
    EXPECT_EQ(GetPrivateProfileStringA(row.section, row.key, "?", row.size, file), row.expected);
}

/// What is read may not depend on whether the file was saved by this program in between.
TEST_P(ProfileFileRules, HoldAfterTheFileWasWrittenAgain) {
    const Row& row = GetParam();
    const ProfileFile file = ProfileFile::parse(ProfileFile::parse(row.content).text());
    EXPECT_EQ(GetPrivateProfileStringA(row.section, row.key, "?", row.size, file), row.expected);
}

std::string nameOf(const testing::TestParamInfo<Row>& row) { return row.param.name; }

INSTANTIATE_TEST_SUITE_P(Names, ProfileFileRules, testing::ValuesIn(nameRows()), nameOf);
INSTANTIATE_TEST_SUITE_P(Values, ProfileFileRules, testing::ValuesIn(valueRows()), nameOf);
INSTANTIATE_TEST_SUITE_P(Lines, ProfileFileRules, testing::ValuesIn(lineRows()), nameOf);

} // namespace
} // namespace varda
