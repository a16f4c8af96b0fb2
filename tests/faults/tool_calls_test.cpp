#include "cli/program_fixture.h"
#include "core/files/atomic_file.h"
#include "faults/system_faults.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <string>
#include <vector>

namespace varda::faults {
namespace {

/// varda-cli, run in this process, of which the n-th call to the system fails, for n = 1, 2, 3 .. until no
/// fault is met.
class ToolCalls : public test::ProgramTest, public testing::WithParamInterface<bool> {
protected:
    static constexpr int mostCalls = 400;
    static constexpr int right = 0;
    static constexpr int usage = 2;
    static constexpr int ofPort = 3;
    static constexpr int ofFile = 4;

    /// Runs the tool with such a fault. @return whether it was met
    bool runWith(int call, const std::vector<std::string>& arguments) {
        const SystemFault fault({.call = call, .error = EIO, .isLasting = GetParam()});
        code = run(arguments);
        return fault.hasStruck();
    }

    int code = right;
};

INSTANTIATE_TEST_SUITE_P(Tool, ToolCalls, testing::Bool(),
                         [](const auto& set) { return set.param ? "ForGood" : "Once"; });

/// Either all is right and both reports are whole, or it says what is not, and each report is whole or as it
/// was before.
TEST_P(ToolCalls, OfARunWithReportsMayFail) {
    const std::string scenario = file(
        "one.scn", "[Information]\r\nTotal=1\r\n[Scenario]\r\nScenario0=FF FF 21 03 00 00 08 BD 85 \r\n");
    const std::string before = "what was there before";
    int call = 1;
    for (bool isMet = true; isMet && call < mostCalls; ++call) {
        SCOPED_TRACE("call " + std::to_string(call));
        const std::string xml = file("results.xml", before);
        const std::string page = file("results.html", before);
        isMet = runWith(call,
                        {"run", "-p", "VIRTUAL", "--period", "1", "--junit", xml, "--html", page, scenario});
        const std::string results = test::bytesOf(xml);
        const std::string words = test::bytesOf(page);
        EXPECT_TRUE(results == before || results.ends_with("</testsuites>\n")) << results;
        EXPECT_TRUE(words == before || words.ends_with("</html>\n")) << words;
        EXPECT_TRUE(code == right || code == usage || code == ofPort || code == ofFile) << code;
        EXPECT_EQ(code == right, results != before && words != before) << code;
        EXPECT_EQ(code == right, error.text().empty()) << error.text();
    }
    EXPECT_GT(call, 30) << "the faults were not met";
    EXPECT_LT(call, mostCalls) << "the faults did not end";
}

} // namespace
} // namespace varda::faults
