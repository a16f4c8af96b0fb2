#include "walks/mixed_page_model.h"
#include "walks/read_page_model.h"
#include "walks/walk.h"
#include "walks/write_page_model.h"

#include <gtest/gtest.h>

namespace varda::walks {

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
