#include "core/base/runtime_error.h"
#include "core/files/profile_file.h"
#include "core/insight/nearest_pair.h"
#include "core/insight/pair_lint.h"
#include "core/pairs/packet_file.h"
#include "core/pairs/packet_table.h"
#include "core/pairs/send_data_check.h"
#include "core/pairs/sim_kinds.h"
#include "core/protocol/hex_text.h"
#include "core/runs/responder.h"
#include "input.h"

/// Any fields of the simulation page, any prepared texts: built, registered, saved, loaded, found, taken
/// back.
namespace {

using namespace varda;
using fuzz::require;

constexpr std::initializer_list<int> known = {6, 9, 13};

SimFields fieldsOf(fuzz::Input& input) {
    SimFields fields;
    fields.destination = input.text(4);
    fields.source = input.text(4);
    fields.position = {input.text(3), input.text(5), input.text(3)};
    fields.count = input.text(4);
    fields.sendData = input.text(40);
    for (int left = input.below(20); left > 0; --left) {
        fields.points.push_back(input.text(24));
    }
    return fields;
}

void takeBack(const std::string& request) {
    fuzz::attempt(known, [&] {
        const PreparedRequest taken = parsePreparedRequest(request);
        require(!taken.supported || findSimKind(taken.mode) != nullptr, "a supported mode has its kind");
    });
    preparedAnswerData(request);
}

/// What a table holds that a file can: texts without blanks around them, of less than 1024 characters.
void saveAndLoad(const PacketTable& table) {
    ProfileFile file;
    if (!storePackets(table, file)) {
        return;
    }
    PacketTable loaded;
    const PacketLoad load = loadPackets(loaded, ProfileFile::parse(file.text()));
    if (load == PacketLoad::Complete) {
        require(loaded.requests().size() == table.requests().size(), "as many come back");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input(data, size);
    PacketTable table;
    for (int left = input.below(5); left > 0; --left) {
        const SimKind& kind = simKinds.at(static_cast<std::size_t>(input.below(4)));
        const SimFields fields = fieldsOf(input);
        fuzz::attempt(known, [&] {
            const std::string request = kind.makeRequest(fields);
            table.addPair(request, kind.makeAnswer(fields));
            takeBack(request);
        });
        CheckSimSendData(kind.checkedData, fields.sendData);
    }
    for (int left = input.below(5); left > 0; --left) {
        table.addPair(input.text(60), input.text(60));
        takeBack(table.requests().back());
    }
    const Bytes asked = input.bytes(40);
    const auto answer = Responder(table).answerTo(asked);
    require(!answer || table.requests()[answer->pair.value()] == hexRun(asked), "the pair has that request");
    nearestPair(table, asked, asked.size());
    lintPairs(table);
    saveAndLoad(table);
    fuzz::attempt(known, [&] {
        PacketTable loaded;
        loadPackets(loaded, ProfileFile::parse(input.rest()));
        require(loaded.requests().size() - loaded.answers().size() <= 1, "at most one has no answer");
    });
    return 0;
}
