#include "core/protocol/crc16.h"
#include "core/protocol/hex_text.h"
#include "core/protocol/independent_encoder.h"
#include "core/virtual/controller.h"
#include "docs/protocol_document.h"
#include "docs/protocol_requests.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <optional>
#include <regex>
#include <set>
#include <stdexcept>

namespace varda::test {
namespace {

struct WordValue {
    int address;
    std::uint16_t value;
};

/// One example, its lines understood.
struct Example {
    NamedRequest request;
    std::optional<NamedRequest> sentBefore;
    std::vector<WordValue> before;
    Bytes sent;
    std::optional<Bytes> answer;
    std::vector<WordValue> after;
};

void appendWords(std::vector<WordValue>& words, const std::string& text) {
    std::smatch found;
    if (!std::regex_match(text, found, std::regex(R"(([A-Z]+ \d+)(?: to (\d+))? = ([0-9A-F]{4}))"))) {
        throw std::runtime_error("no word of the memory: " + text);
    }
    NamedRegister reg = parseRegister(found[1]);
    const int first = reg.word();
    reg.number = found[2].matched ? found[2].str() : reg.number;
    for (int address = first; address <= reg.word(); ++address) {
        words.push_back({address, static_cast<std::uint16_t>(fromHex(found[3].str()))});
    }
}

std::vector<WordValue> parseWords(const std::string& text) {
    std::vector<WordValue> words;
    if (!text.empty()) {
        for (const std::string& part : split(text, ',')) {
            appendWords(words, part);
        }
    }
    return words;
}

/// The lines of an example behind the first: what stands behind each name. @throws std::runtime_error for a
/// name that is none, or comes twice
std::map<std::string, std::string> namedLines(const Texts& lines) {
    std::map<std::string, std::string> named = {
        {"sent before", ""}, {"memory before", ""}, {"request", ""}, {"answer", ""}, {"memory after", ""}};
    for (std::size_t line = 1; line < lines.size(); ++line) {
        const Texts parts = split(lines[line], ':');
        const auto place = named.find(parts.front());
        if (parts.size() != 2 || place == named.end() || !place->second.empty()) {
            throw std::runtime_error("no line of an example: " + lines[line]);
        }
        place->second = parts.back();
    }
    return named;
}

Example parseExample(const Texts& lines) {
    const auto named = namedLines(lines);
    const std::string& sentBefore = named.at("sent before");
    const std::string& answer = named.at("answer");
    return {parseRequest(lines.at(0)),
            sentBefore.empty() ? std::nullopt : std::optional(parseRequest(sentBefore)),
            parseWords(named.at("memory before")),
            parseBytes(named.at("request")),
            answer == "none" ? std::nullopt : std::optional(parseBytes(answer)),
            parseWords(named.at("memory after"))};
}

std::string shown(const std::optional<Bytes>& frame) { return frame ? hexGroups(*frame) : "none"; }

/// The frame within what goes over the line: all of it but the byte behind a mixed request.
Bytes requestFrame(const Example& example) {
    Bytes frame = example.sent;
    frame.resize(frame.size() - (example.request.mixed ? 1 : 0));
    return frame;
}

/// Runs `look` for every example, and says which one where it fails.
template <typename Look>
void forEachExample(Look&& look) {
    const ProtocolDocument document = readProtocolDocument();
    ASSERT_FALSE(document.frames.empty());
    for (const FrameBlock& block : document.frames) {
        SCOPED_TRACE("docs/protocol.md, line " + std::to_string(block.line));
        ASSERT_NO_THROW(look(parseExample(block.lines)));
    }
}

TEST(ProtocolDocument, EveryRequestIsWhatTheProgramSends) {
    forEachExample([](const Example& example) {
        FrameImages images;
        if (example.sentBefore) {
            wire(*example.sentBefore, images);
        }
        EXPECT_EQ(hexGroups(example.sent), hexGroups(wire(example.request, images)));
    });
}

TEST(ProtocolDocument, EveryAnswerIsWhatTheEmbeddedControllerSays) {
    forEachExample([](const Example& example) {
        Controller controller;
        for (const auto& [address, value] : example.before) {
            controller.setWord(address, value);
        }
        EXPECT_EQ(shown(example.answer), shown(controller.answer(example.sent)));
        for (const auto& [address, value] : example.after) {
            EXPECT_EQ(value, controller.word(address)) << "word " << address;
        }
    });
}

TEST(ProtocolDocument, EveryAnswerHasTheLengthThatTheMasterWaitsFor) {
    forEachExample([](const Example& example) {
        if (example.answer) {
            EXPECT_EQ(static_cast<int>(example.answer->size()), awaitedAnswer(example.request));
        }
    });
}

void expectLengthAndCheck(const Bytes& frame) {
    ASSERT_GE(frame.size(), 6U);
    EXPECT_EQ(frame[offset::length], low(static_cast<unsigned>(frame.size() - 6)));
    const unsigned check = frameCheck(frame, frame.size() - 2);
    EXPECT_EQ(crc16(std::span(frame).first(frame.size() - 2)), check);
    EXPECT_EQ(frame[frame.size() - 2], low(check));
    EXPECT_EQ(frame[frame.size() - 1], high(check));
    EXPECT_EQ(crc16(frame), 0);
}

TEST(ProtocolDocument, LengthAndCrcOfEveryFrameFit) {
    forEachExample([](const Example& example) {
        expectLengthAndCheck(requestFrame(example));
        if (example.answer) {
            expectLengthAndCheck(*example.answer);
        }
    });
}

TEST(ProtocolDocument, EveryKindOfRequestHasAnAnsweredExample) {
    std::set<std::string> names;
    forEachExample([&names](const Example& example) {
        if (example.answer) {
            names.insert(example.request.name());
        }
    });
    EXPECT_EQ(names, (std::set<std::string>{"read bits", "read mixed", "read words", "write bits",
                                            "write mixed", "write words"}));
}

TEST(ProtocolDocument, NoExampleIsOverlooked) {
    const ProtocolDocument document = readProtocolDocument();
    const auto requests = std::ranges::count_if(
        document.lines, [](const std::string& line) { return line.find("request: ") != std::string::npos; });
    EXPECT_EQ(static_cast<std::size_t>(requests), document.frames.size());
    const std::regex frame("([0-9A-Fa-f]{2} ){5}");
    for (const std::string& line : document.prose) {
        EXPECT_FALSE(std::regex_search(line, frame)) << "a frame that is no example: " << line;
    }
}

} // namespace
} // namespace varda::test
