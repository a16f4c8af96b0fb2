#include "core/recordings/recording_files.h"

#include "core/insight/expectation.h"
#include "core/protocol/hex_text.h"

#include <map>
#include <set>

namespace varda::inline core {

std::vector<std::string> scenarioOf(const Recording& recording) {
    std::vector<std::string> lines;
    for (const RecordedExchange& exchange : exchangesOf(recording)) {
        lines.push_back(hexSpaced(exchange.request));
    }
    return lines;
}

std::vector<std::string> expectationsOf(const Recording& recording) {
    std::vector<std::string> texts;
    for (const RecordedExchange& exchange : exchangesOf(recording)) {
        texts.push_back(exchange.answer ? hexSpaced(*exchange.answer) : std::string(expectedSilence));
    }
    return texts;
}

RecordedPairs pairsOf(const Recording& recording) {
    RecordedPairs pairs;
    std::map<Bytes, Bytes> answers;
    std::set<Bytes> unanswered;
    std::set<Bytes> changing;
    for (const RecordedExchange& exchange : exchangesOf(recording)) {
        if (!exchange.answer) {
            unanswered.insert(exchange.request);
            continue;
        }
        const auto [place, isNew] = answers.emplace(exchange.request, *exchange.answer);
        if (isNew) {
            pairs.requests.push_back(hexRun(exchange.request));
            pairs.answers.push_back(hexRun(*exchange.answer));
        } else if (place->second != *exchange.answer) {
            changing.insert(exchange.request);
        }
    }
    std::erase_if(unanswered, [&answers](const Bytes& request) { return answers.contains(request); });
    pairs.unanswered = unanswered.size();
    pairs.changing = changing.size();
    return pairs;
}

} // namespace varda::core
