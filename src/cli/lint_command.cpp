#include "cli/lint_command.h"

#include "cli/files.h"

namespace varda::cli {

void LintCommand::declare(CLI::App& app) {
    app.add_option("files", files_, "Files of prepared pairs")->required()->check(existingFile());
}

ExitCode LintCommand::run(const Streams& /*streams*/, Report& report) {
    bool isEachRight = true;
    for (const std::string& file : files_) {
        PacketTable table;
        addPairs(table, file);
        for (const PairFinding& finding : lintPairs(table)) {
            report.finding(file, finding);
            isEachRight = false;
        }
    }
    return isEachRight ? ExitCode::Right : ExitCode::Failed;
}

} // namespace varda::cli
