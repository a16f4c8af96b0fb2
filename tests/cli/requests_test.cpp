#include "cli/requests.h"

#include "cli/failure.h"
#include "core/base/runtime_error.h"
#include "core/insight/decoder.h"

#include <gtest/gtest.h>

namespace varda {

using namespace cli;

namespace {

const StationTexts stations = {.destination = "5", .source = "0"};

std::vector<Operand> operands(const char* text) { return readOperands({text}); }

Operand operand(const char* text) { return operands(text).front(); }

/// What the decoder makes of it, which knows nothing of how it was built.
std::vector<PointRun> runsIn(const Request& request) {
    const DecodedFrame frame = decode(request.bytes);
    EXPECT_TRUE(frame.isSound());
    EXPECT_EQ(frame.kind.command->code, static_cast<int>(request.mode));
    EXPECT_EQ(request.bytes.at(offset::destination), 5);
    return runsOf(frame);
}

/// As the decoder reads them, in their order.
std::vector<int> valuesIn(const Request& request) {
    std::vector<int> values;
    for (const Field& field : decode(request.bytes).fields) {
        if (field.role == FieldRole::Value) {
            values.push_back(static_cast<int>(field.number));
        }
    }
    return values;
}

template <typename Make>
std::string refusalOf(Make&& make) {
    try {
        make();
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.code(), ExitCode::Usage);
        return failure.what();
    }
    return "";
}

TEST(Requests, ReadWhatTheOperandNames) {
    const Request words = readRequest(stations, operand("W 0100 4"));
    EXPECT_EQ(runsIn(words), (std::vector<PointRun>{{{Access::Word, 612}, 4}}));
    EXPECT_EQ(words.answerLength, 14);
    const Request bit = readRequest(stations, operand("R 0012.3"));
    EXPECT_EQ(runsIn(bit), (std::vector<PointRun>{{{Access::Bit, 195}, 1}}));
    EXPECT_EQ(bit.answerLength, 7);
}

TEST(Requests, ReadAsMuchAsAnAnswerBrings) {
    EXPECT_EQ(readRequest(stations, operand("R 0.0 256")).answerLength, 262);
    EXPECT_EQ(readRequest(stations, operand("W 0 128")).answerLength, 262);
    EXPECT_EQ(refusalOf([] { readRequest(stations, operand("R 0.0 257")); }),
              "257 bits are too many for one read, which has room for 256.");
    EXPECT_EQ(refusalOf([] { readRequest(stations, operand("W 0 129")); }),
              "129 words are too many for one read, which has room for 128.");
}

TEST(Requests, WriteWhatTheOperandNames) {
    const Request words = writeRequest(stations, operand("W 0100=1A2Bh,7"));
    EXPECT_EQ(runsIn(words), (std::vector<PointRun>{{{Access::Word, 612}, 2}}));
    EXPECT_EQ(Bytes(words.bytes.begin() + offset::data, words.bytes.end() - 2),
              (Bytes{0x2B, 0x1A, 0x07, 0x00}));
    EXPECT_EQ(words.answerLength, 7);
    const Request bits = writeRequest(stations, operand("M 0000.0=ON,OFF"));
    EXPECT_EQ(Bytes(bits.bytes.begin() + offset::data, bits.bytes.end() - 2), (Bytes{0xFF, 0x00}));
}

TEST(Requests, NameWhatDoesNotGoTogether) {
    EXPECT_EQ(refusalOf([] { writeRequest(stations, operand("W 0100 4")); }),
              "What is to be written to W 0100? Put it behind an \"=\", several values between commas.");
    EXPECT_EQ(refusalOf([] { readRequest(stations, operand("W 0100=4")); }),
              "W 0100 is to be read: leave the value away, or write it.");
}

TEST(Requests, ReadMixedPoints) {
    const Request request = mixedReadRequest(stations, operands("R 0012.3 W 0100 2"));
    EXPECT_EQ(runsIn(request), (std::vector<PointRun>{{{Access::Bit, 195}, 1}, {{Access::Word, 612}, 2}}));
    EXPECT_EQ(request.answerLength, 11);
}

TEST(Requests, WriteMixedPointsSideBySide) {
    const Request request = mixedWriteRequest(stations, operands("M 0000.0=ON W 0100=1,1A2Bh"));
    EXPECT_EQ(runsIn(request),
              (std::vector<PointRun>{{{Access::Bit, 192 * 16}, 1}, {{Access::Word, 612}, 2}}));
    EXPECT_EQ(request.answerLength, 7);
    EXPECT_EQ(valuesIn(request), (std::vector<int>{0xFF, 1, 0x1A2B}));
}

TEST(Requests, EndWithTheLastRegister) {
    EXPECT_EQ(refusalOf([] { mixedWriteRequest(stations, operands("SR 511=1,2")); }),
              "There is no register behind SR 511 for the last values. Leave them away.");
}

TEST(Requests, CutNoMixedPointsOff) {
    EXPECT_EQ(refusalOf([] { mixedWriteRequest(stations, operands("W 0=1 W 1=2 R 0.0=ON")); }), "");
    std::string many = "W 0=1";
    for (int index = 1; index < 70; ++index) {
        many += ",1";
    }
    EXPECT_EQ(refusalOf([&] { mixedWriteRequest(stations, operands(many.c_str())); }),
              "These points are too many for one request. Leave some of them away.");
    EXPECT_THROW(mixedReadRequest(stations, operands("W 0 128")), RuntimeError);
    EXPECT_THROW(mixedReadRequest(stations, operands("SR 0")), RuntimeError);
}

} // namespace
} // namespace varda
