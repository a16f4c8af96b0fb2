#pragma once

#include "walks/page_model.h"
#include "walks/period_model.h"

namespace varda::walks {

/// The period field of one page under a user's hands, key by key.
class PeriodWalkModel : public PageModel {
public:
    PeriodWalkModel(std::string field, std::string neighbour, const std::string& start);

    Action draw(std::mt19937& engine) const override;
    bool isPossible(const Action& action) const override;
    void apply(const Action& action) override;
    Shown shown() const override;

private:
    std::string field_;
    std::string neighbour_;
    PeriodModel period_;
    bool altered_ = false;
};

} // namespace varda::walks
