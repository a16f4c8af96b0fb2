#include "core/insight/traced_link.h"

#include "support/twelve_faults.h"

#include <cctype>

namespace varda::test {
namespace {

/// A far end that does wrong, and what the trace says of it.
class FaultyFarEndTest : public TracedLinkTest {
protected:
    void ask() { send(hexGroups(faultRequest()).c_str(), 10); }
    void answer(const Bytes& bytes, int after = 10) {
        constexpr int waits = 13 * 500; // milliseconds until no answer is awaited any more
        if (after > waits) {
            clock.advance(waits);
            tick(13);
            after -= waits;
        }
        receive(hexGroups(bytes).c_str(), after);
        clock.advance(answered);
    }
    /// Of the received line of that number, or of the last one.
    std::string said(int line) const {
        return verdict(line < 0 ? lines() - 1 : static_cast<std::size_t>(2 + line));
    }

    static constexpr int answered = 100; ///< milliseconds until what came is read
};

class TwelveFaults : public FaultyFarEndTest, public testing::WithParamInterface<LineFault> {};

TEST_P(TwelveFaults, AreSaidInASentence) {
    ask();
    int passed = 0;
    for (const LineFault::Piece& piece : GetParam().pieces) {
        answer(piece.bytes, piece.after - passed);
        passed = answered;
    }
    EXPECT_EQ(said(GetParam().line), GetParam().verdict);
}

INSTANTIATE_TEST_SUITE_P(OfALine, TwelveFaults, testing::ValuesIn(twelveFaults()), [](const auto& fault) {
    std::string name = fault.param.name; // "fault-7-bits"
    std::erase_if(name, [](unsigned char letter) { return std::isalnum(letter) == 0; });
    return name;
});

TEST_F(FaultyFarEndTest, AnAnswerThatComesOnceMoreIsTakenOnceMore) {
    ask();
    answer(bytesOfText(wordAnswer));
    answer(bytesOfText(wordAnswer));
    EXPECT_EQ(said(-1), "Taken once more: the request had its answer already, and this has its length, too.");
}

TEST_F(FaultyFarEndTest, AnAnswerToSomethingElseIsTakenAndSaidToBe) {
    ask();
    answer(soundFrame("00 05 A1 04 FF 00 FF 00 "));
    EXPECT_EQ(
        said(-1),
        "Taken: it has the 10 bytes that were awaited. Nothing else is looked at. It is an answer to bit "
        "read, and a word read was sent.");
}

} // namespace
} // namespace varda::test
