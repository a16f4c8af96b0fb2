#include "walks/mixed_page_model.h"
#include "walks/period_walk_model.h"
#include "walks/read_page_model.h"
#include "walks/walk.h"
#include "walks/write_page_model.h"

#include <gtest/gtest.h>

namespace varda::walks {

namespace {

Page periodPage(int mode, const char* field, const char* neighbour, const char* start) {
    return {mode, [=](std::uint_fast32_t /*seed*/) {
                return std::make_unique<PeriodWalkModel>(field, neighbour, start);
            }};
}

} // namespace

TEST(MasterPagesWalk, PeriodFields) {
    walk(periodPage(0, "txtReadTimerValue", "txtRDDA", "500"), 4);
    walk(periodPage(1, "txtWriteTimerValue", "txtWDDA", "500"), 4);
    walk(periodPage(2, "txtMReadTimerValue", "txtMRDDA", "500"), 4);
    walk(periodPage(3, "txtMWriteTimerValue", "txtMWDDA", "100"), 4);
}

TEST(MasterPagesWalk, ReadPage) {
    walk({0, [](std::uint_fast32_t /*seed*/) { return std::make_unique<ReadPageModel>(); }});
}

TEST(MasterPagesWalk, WritePage) {
    walk({1, [](std::uint_fast32_t seed) { return std::make_unique<WritePageModel>(seed); }});
}

TEST(MasterPagesWalk, MixedReadPage) {
    walk({2, [](std::uint_fast32_t /*seed*/) { return std::make_unique<MixedReadPageModel>(); }});
}

TEST(MasterPagesWalk, MixedWritePage) {
    walk({3, [](std::uint_fast32_t /*seed*/) { return std::make_unique<MixedWritePageModel>(); }});
}

} // namespace varda::walks
