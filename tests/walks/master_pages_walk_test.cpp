#include "walks/read_page_model.h"
#include "walks/walk.h"

#include <gtest/gtest.h>

namespace varda::walks {

TEST(MasterPagesWalk, ReadPage) {
    walk({0, [](std::uint_fast32_t /*seed*/) { return std::make_unique<ReadPageModel>(); }});
}

} // namespace varda::walks
