#include "walks/mixed_page_model.h"
#include "walks/period_walk_model.h"
#include "walks/read_page_model.h"
#include "walks/walk_window.h"
#include "walks/write_page_model.h"

#include <gtest/gtest.h>

namespace varda::walks {

namespace {

constexpr std::uint_fast32_t dataSeed = 4711;

/// Walks on the page of that mode. @param data are the model's arguments
template <typename PageModelOnIt, typename... Data>
void walkOn(int mode, int share, const Data&... data) {
    Subject subject;
    subject.makeHands = [mode] { return std::make_unique<WalkWindow>(mode, dataSeed); };
    subject.makeModel = [data...] { return std::make_unique<PageModelOnIt>(data...); };
    subject.share = share;
    walk(subject);
}

void walkOnPeriod(int mode, const std::string& field, const std::string& neighbour,
                  const std::string& start) {
    walkOn<PeriodWalkModel>(mode, 4, field, neighbour, start);
}

} // namespace

TEST(MasterPagesWalk, PeriodFields) {
    walkOnPeriod(0, "txtReadTimerValue", "txtRDDA", "500");
    walkOnPeriod(1, "txtWriteTimerValue", "txtWDDA", "500");
    walkOnPeriod(2, "txtMReadTimerValue", "txtMRDDA", "500");
    walkOnPeriod(3, "txtMWriteTimerValue", "txtMWDDA", "100");
}

TEST(MasterPagesWalk, ReadPage) { walkOn<ReadPageModel>(0, 1); }
TEST(MasterPagesWalk, WritePage) { walkOn<WritePageModel>(1, 1, dataSeed); }
TEST(MasterPagesWalk, MixedReadPage) { walkOn<MixedReadPageModel>(2, 1); }
TEST(MasterPagesWalk, MixedWritePage) { walkOn<MixedWritePageModel>(3, 1); }

} // namespace varda::walks
