#include "core/files/profile_file.h"
#include "core/pairs/packet_file.h"
#include "sizes.h"
#include "support/temporary_folder.h"

#include <filesystem>

namespace varda::bench {
namespace {

void save(const PacketTable& table, const std::string& path) {
    ProfileFile file = ProfileFile::load(path);
    storePackets(table, file);
    file.save(path);
}

void saveToANewFile(benchmark::State& state) {
    const test::TemporaryFolder folder;
    PacketTable table;
    fill(table, readsOf(state));
    for ([[maybe_unused]] auto _ : state) {
        save(table, folder.file("pairs.ini"));
        state.PauseTiming();
        std::filesystem::remove(folder.file("pairs.ini"));
        state.ResumeTiming();
    }
}

void saveOverTheSameFile(benchmark::State& state) {
    const test::TemporaryFolder folder;
    PacketTable table;
    fill(table, readsOf(state));
    save(table, folder.file("pairs.ini"));
    for ([[maybe_unused]] auto _ : state) {
        save(table, folder.file("pairs.ini"));
    }
}

void load(benchmark::State& state) {
    const test::TemporaryFolder folder;
    PacketTable table;
    fill(table, readsOf(state));
    save(table, folder.file("pairs.ini"));
    for ([[maybe_unused]] auto _ : state) {
        if (loadPackets(table, ProfileFile::load(folder.file("pairs.ini"))) != PacketLoad::Complete) {
            state.SkipWithError("the file was not loaded whole");
            break;
        }
    }
}

BENCHMARK(saveToANewFile)->Name("save, new file")->Apply(sizes)->UseRealTime();
BENCHMARK(saveOverTheSameFile)->Name("save, over the same file")->Apply(sizes)->UseRealTime();
BENCHMARK(load)->Name("load")->Apply(sizes)->UseRealTime();

} // namespace
} // namespace varda::bench
