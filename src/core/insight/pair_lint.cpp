#include "core/insight/pair_lint.h"

#include "core/insight/decoder.h"
#include "core/insight/field_words.h"
#include "core/pairs/packet_table.h"
#include "core/protocol/hex_text.h"

#include <optional>

namespace varda::inline core {
namespace {

constexpr const char* noFrameRemedy = "Write it as pairs of hexadecimal digits, or remove the pair.";

/// What makes a frame sound, in the digits that its text has to have.
std::string remedyOf(const DecodedFrame& frame, Fault fault) {
    switch (fault) {
    case Fault::Cut:
        return "Add what is missing, or remove the pair.";
    case Fault::WrongLength:
        return "Write " + hex(static_cast<int>(frame.bodyLength), 2) +
               " as its fourth byte, and the check anew.";
    case Fault::WrongBody:
        return "Make its body as long as that.";
    case Fault::WrongCheck:
        return "Write " + hex(frame.checkRight & 0xFF, 2) + hex(frame.checkRight >> 8, 2) +
               " as its last two bytes.";
    case Fault::UnknownCommand:
        return "Write the code of a command as its third byte.";
    case Fault::MoreBytes:
        return "Remove what follows the frame.";
    }
    return {};
}

std::string pairName(std::size_t row) { return "pair " + std::to_string(row + 1); }

/// Looks at one pair.
class PairLint {
public:
    PairLint(const PacketTable& table, std::size_t row, std::vector<PairFinding>& findings)
        : table_(table), row_(row), findings_(findings) {}

    void run() {
        const std::string& text = table_.requests()[row_];
        const std::optional<Bytes> request = readHexRun(text);
        if (!request || request->empty()) {
            find("The request is no frame, so nothing ever equals it.", noFrameRemedy);
            return;
        }
        lookForReach(text, *request);
        const DecodedFrame frame = decode(*request);
        lookForFaults("request", frame);
        if (!frame.kind.isRequest() && frame.kind.command != nullptr) {
            find("What stands as the request is an answer.", "Exchange the two, or remove the pair.");
        }
        lookForExtraByte(frame);
        lookAtAnswer(frame, *request);
    }

private:
    void find(const std::string& problem, const std::string& remedy) {
        findings_.push_back({row_, problem, remedy});
    }

    void lookForReach(const std::string& text, const Bytes& request) {
        if (text != hexRun(request)) {
            find("The request is written in small letters, which what comes in never equals.",
                 "Write its digits as capitals.");
        }
        const std::optional<std::size_t> first = table_.find(text);
        if (first && *first < row_) {
            find("It is never reached: " + pairName(*first) + " has the same request, and comes first.",
                 "Remove one of the two.");
        }
    }

    void lookForFaults(const std::string& what, const DecodedFrame& frame) {
        for (const Fault fault : frame.faults) {
            find("The " + what + ": " + faultInWords(frame, fault), remedyOf(frame, fault));
        }
    }

    /// The pages send one byte more than a mixed request has.
    void lookForExtraByte(const DecodedFrame& frame) {
        const bool isMixed = frame.kind.isRequest() && !frame.kind.command->access;
        if (isMixed && frame.isSound() && frame.find(FieldRole::Behind) == nullptr) {
            find("The mixed pages of this program send one byte more behind such a request.",
                 "Add \"00\" at its end, where it is to answer them.");
        }
    }

    void lookAtAnswer(const DecodedFrame& request, const Bytes& requestBytes) {
        const std::optional<Bytes> bytes = readHexRun(table_.answer(row_));
        if (!bytes || bytes->empty()) {
            find("The answer is no frame, so nothing is sent.", noFrameRemedy);
            return;
        }
        const DecodedFrame answer = decode(*bytes, requestBytes);
        if (request.kind.isRequest() &&
            (!answer.kind.isAnswer || answer.kind.command != request.kind.command)) {
            find("The answer is of another kind, " + kindInWords(answer.kind) + ", than the request, " +
                     kindInWords(request.kind) + '.',
                 "Give it the answer of that kind, or remove the pair.");
            return;
        }
        lookForFaults("answer", answer);
    }

    const PacketTable& table_;
    std::size_t row_;
    std::vector<PairFinding>& findings_;
};

} // namespace

std::vector<PairFinding> lintPairs(const PacketTable& table) {
    std::vector<PairFinding> findings;
    for (std::size_t row = 0; row < table.requests().size(); ++row) {
        PairLint(table, row, findings).run();
    }
    return findings;
}

} // namespace varda::core
