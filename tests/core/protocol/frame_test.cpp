#include "core/protocol/frame.h"

#include "core/base/bytes.h"

#include <gtest/gtest.h>

#include <array>

namespace varda {
namespace {

const Bytes wordRead = {0x01, 0x00, 0x23, 0x03, 0x00, 0x02, 0x01, 0x0E, 0xE3};

TEST(Frame, IsFoundAtTheBeginningOfItsBytes) {
    const auto frame = parse(wordRead);
    ASSERT_TRUE(frame);
    EXPECT_EQ(frame->destination, 0x01);
    EXPECT_EQ(frame->source, 0x00);
    EXPECT_EQ(frame->code, command::wordRead);
    EXPECT_EQ(Bytes(frame->body.begin(), frame->body.end()), (Bytes{0x00, 0x02, 0x01}));
    EXPECT_EQ(frame->size(), wordRead.size());
}

TEST(Frame, MayBeFollowedByMore) {
    Bytes bytes = wordRead;
    bytes.insert(bytes.end(), {0xAA, 0xBB});
    const auto frame = parse(bytes);
    ASSERT_TRUE(frame);
    EXPECT_EQ(frame->size(), wordRead.size());
}

TEST(Frame, IsNotFoundInFewerBytesThanLenSays) {
    for (std::size_t size = 0; size < wordRead.size(); ++size) {
        EXPECT_FALSE(parse(std::span(wordRead).first(size))) << size;
    }
}

TEST(Frame, IsNotFoundBeforeAnotherCheck) {
    for (std::size_t at = 0; at < wordRead.size(); ++at) {
        Bytes damaged = wordRead;
        damaged[at] ^= 0x01;
        EXPECT_FALSE(parse(damaged)) << at;
    }
}

TEST(Frame, MayHaveNoBody) {
    const Bytes bytes = {0x00, 0x00, 0x25, 0x00, 0x1A, 0xB4};
    const auto frame = parse(bytes);
    ASSERT_TRUE(frame);
    EXPECT_TRUE(frame->body.empty());
}

struct CommandRow {
    std::uint8_t code;
    std::optional<Access> access;
    bool writes;
};

TEST(Commands, TellWhatTheirCodesAskFor) {
    constexpr std::array<CommandRow, 6> rows = {{{0x21, Access::Bit, false},
                                                 {0x22, Access::Bit, true},
                                                 {0x23, Access::Word, false},
                                                 {0x24, Access::Word, true},
                                                 {0x25, std::nullopt, false},
                                                 {0x26, std::nullopt, true}}};
    ASSERT_EQ(commands().size(), rows.size());
    for (const CommandRow& row : rows) {
        const Command* const command = findCommand(row.code);
        ASSERT_NE(command, nullptr);
        EXPECT_EQ(command->access, row.access);
        EXPECT_EQ(command->writes, row.writes);
    }
    for (const int code : {0x00, 0x20, 0x27, 0xA1, 0xFF}) {
        EXPECT_EQ(findCommand(static_cast<std::uint8_t>(code)), nullptr) << code;
    }
}

TEST(Commands, AnswerToAReadCarriesItsValues) {
    EXPECT_EQ(readAnswerSize(Access::Bit, 8), 14);
    EXPECT_EQ(readAnswerSize(Access::Word, 8), 22);
    EXPECT_EQ(readAnswerSize(Access::Word, 256), 518);
}

} // namespace
} // namespace varda
