#pragma once

#include "core/pairs/packet_table.h"
#include "support/prepared_reads.h"

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

namespace varda::bench {

/// Every benchmark runs with tables of these many pairs.
inline void sizes(benchmark::internal::Benchmark* benchmark) {
    for (const int pairs : {100, 2000, 20000}) {
        benchmark->Arg(pairs);
    }
}

inline std::vector<test::PreparedRead> readsOf(const benchmark::State& state) {
    constexpr unsigned seed = 20261123;
    return test::preparedReads(static_cast<std::size_t>(state.range(0)), seed);
}

inline void fill(PacketTable& table, const std::vector<test::PreparedRead>& reads) {
    std::vector<std::string> requests;
    std::vector<std::string> answers;
    for (const auto& read : reads) {
        requests.push_back(test::frameText(read.request));
        answers.push_back(test::frameText(read.answer));
    }
    table.replace(std::move(requests), std::move(answers));
}

} // namespace varda::bench
