#include "core/protocol/crc16.h"
#include "core/protocol/frame.h"
#include "core/protocol/mixed_requests.h"
#include "core/protocol/registers.h"

#include "core/insight/field_words.h"

#include <cstdio>

/// Prints what the dissector has to know of the protocol, in Lua, so that it stands in one place only.
namespace {

using namespace varda;

const char* accessText(const Command& command) {
    return !command.access ? "nil" : *command.access == Access::Bit ? "\"bit\"" : "\"word\"";
}

void printKinds() {
    std::printf("local register_kinds = {\n");
    for (const RegisterKind& kind : registerKinds()) {
        std::printf("    { name = \"%.*s\", base = %d, last = %d, digits = %zu },\n",
                    static_cast<int>(kind.name.size()), kind.name.data(), kind.base, kind.last,
                    kind.listWidth);
    }
    std::printf("}\n");
}

void printCommands() {
    std::printf("local commands = {\n");
    for (const Command& command : commands()) {
        std::printf("    [0x%02X] = { name = \"%s\", access = %s, writes = %s },\n", unsigned{command.code},
                    kindInWords({&command, false}).c_str(), accessText(command),
                    command.writes ? "true" : "false");
    }
    std::printf("}\n");
}

void printNumbers() {
    std::printf("local answer_mark = 0x%02X\n", unsigned{answerMark});
    std::printf("local word_mark = 0x%02X00\n", unsigned{wordMark});
    std::printf("local header_size = %zu\n", frame_size::header);
    std::printf("local envelope_size = %zu\n", frame_size::envelope);
    std::printf("local read_body_size = %zu\n", frame_size::readBody);
    std::printf("local acknowledgement_size = %zu\n", frame_size::acknowledgementBody);
}

void printCheck() {
    std::printf("local crc_table = {");
    for (std::size_t index = 0; index < crc16Table().size(); ++index) {
        std::printf("%s0x%04X,", index % 12 == 0 ? "\n    " : " ", unsigned{crc16Table()[index]});
    }
    std::printf("\n}\n");
}

} // namespace

int main() {
    std::printf("-- The serial host-link protocol of VR-Series PLCs, for Wireshark.\n"
                "--   wireshark -X lua_script:/usr/share/varda/wireshark/varda.lua\n"
                "-- It takes captures of the link type USER0.\n\n"
                "-- Made from the program's own tables:\n\n");
    printKinds();
    printCommands();
    printNumbers();
    printCheck();
    return 0;
}
