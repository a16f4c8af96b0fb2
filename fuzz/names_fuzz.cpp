#include "core/base/runtime_error.h"
#include "core/files/profile_file.h"
#include "core/insight/expectation.h"
#include "core/insight/register_names.h"
#include "core/insight/trace_filter.h"
#include "core/protocol/register_words.h"
#include "input.h"

#include <algorithm>

/// Any text as the user's names of registers, as what is wanted of an answer, and as a filter of the trace.
namespace {

using namespace varda;
using fuzz::require;

void readNames(const std::string& text) {
    const RegisterNames names = RegisterNames::parse(text);
    const auto lines = static_cast<std::size_t>(std::ranges::count(text, '\n')) + 1;
    require(names.size() + names.badLines().size() <= lines, "a line is a name or a bad one");
    if (const auto point = readPoint(text)) {
        require(readPoint(nameOf(*point)) == point, "a register reads back");
    }
}

void readExpectation(const std::string& text, const Exchange& exchange) {
    try {
        Expectation::parse(text).judge(exchange);
    } catch (const RuntimeError& refused) {
        require(refused.number() == 13 && !refused.advice().empty(), "a refusal names the part");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input(data, size);
    Exchange exchange;
    exchange.outcome = static_cast<Outcome>(input.below(outcomeCount));
    exchange.request = input.bytes(20);
    exchange.answer = input.bytes(40);
    const std::string text = input.rest();
    readNames(text);
    readExpectation(text, exchange);
    readTraceFilter(text);
    fuzz::attempt({6, 13}, [&] { loadExpectations(ProfileFile::parse(text), 4); });
    return 0;
}
