#include "support/memory_use.h"
#include "support/sanitized.h"
#include "window/simulator/simulation_page_fixture.h"

namespace varda::test {
namespace {

class BusyLineTest : public SimulationPageTest {
protected:
    BusyLineTest() {
        openLine();
        addBitRead("0002", "2");
    }

    /// Traffic without a pause in which a request could end.
    void flood(int pieces) {
        const Bytes piece(50'000, 0x5A);
        for (int count = 0; count < pieces; ++count) {
            line.write(piece);
            runFor(std::chrono::milliseconds(1));
        }
    }
};

TEST_F(BusyLineTest, MemoryStaysFlatWhileNoRequestEnds) {
    if (isSanitized) {
        GTEST_SKIP() << "the sanitizer keeps what is freed";
    }
    flood(20);
    const long long before = memoryUse();
    flood(600); // 30 MB
    EXPECT_LT(memoryUse() - before, 4'000'000);
    EXPECT_TRUE(driver.link().InReceive);
}

TEST_F(BusyLineTest, AfterAFloodRequestsAreAnsweredAgain) {
    flood(20);
    ASSERT_TRUE(runUntil([this] { return !text("txtSimRP").empty(); }));
    EXPECT_EQ(text("txtSimRP").size(), 2 * 1025U);
    EXPECT_TRUE(line.readAvailable().empty());
    line.write(bytesOfFrameText(request(0)));
    EXPECT_FALSE(sent(8).empty());
    EXPECT_EQ(text("txtSimRP"), request(0));
}

} // namespace
} // namespace varda::test
