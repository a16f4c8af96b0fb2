#include "cli/decode_command.h"
#include "cli/lint_command.h"
#include "cli/monitor_command.h"
#include "cli/play_command.h"
#include "cli/ports_command.h"
#include "cli/recording_commands.h"
#include "cli/scenario_command.h"
#include "cli/simulate_command.h"
#include "cli/subcommand.h"
#include "cli/transaction_commands.h"

namespace varda::cli {
namespace {

template <typename... Commands>
std::vector<std::unique_ptr<Subcommand>> make() {
    std::vector<std::unique_ptr<Subcommand>> subcommands;
    (subcommands.push_back(std::make_unique<Commands>()), ...);
    return subcommands;
}

} // namespace

std::vector<std::unique_ptr<Subcommand>> makeSubcommands() {
    return make<PortsCommand, ReadCommand, WriteCommand, MixedReadCommand, MixedWriteCommand, SimulateCommand,
                MonitorCommand, ScenarioCommand, PlayCommand, ConvertCommand, CompareCommand, DecodeCommand,
                LintCommand>();
}

} // namespace varda::cli
