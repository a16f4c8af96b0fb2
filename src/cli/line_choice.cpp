#include "cli/line_choice.h"

#include "cli/link_session.h"

namespace varda::cli {

void LineChoice::declare(CLI::App& app) {
    port.declare(app);
    faults.declare(app);
}

void LineChoice::open(LinkSession& session, const Streams& streams, Report& report) const {
    faults.apply(session.faults(), streams, report);
    session.open(port);
}

} // namespace varda::cli
