#include "core/pairs/packet_builders.h"
#include "core/pairs/sim_points.h"
#include "core/protocol/crc16.h"
#include "core/protocol/hex_text.h"
#include "core/protocol/point_list.h"
#include "core/protocol/single_requests.h"
#include "core/virtual/controller.h"
#include "docs/protocol_document.h"
#include "docs/protocol_requests.h"
#include "support/raises.h"

#include <gtest/gtest.h>

namespace varda::test {
namespace {

/// A longest or shortest request of a row, for example "write mixed bits", 84: from number 0 on.
std::string sentence(const std::string& name, const std::string& count) {
    const std::string first = name.ends_with("bits") ? " R 0000.0" : " R 0000";
    const std::string value = name.ends_with("bits") ? "ON" : "1234";
    if (name.starts_with("read")) {
        return name + first + " count " + count + ", stations 255 255";
    }
    if (!name.starts_with("write mixed")) {
        return name + first + " = " + count + " times " + value + ", stations 255 255";
    }
    const std::string point = name.substr(name.rfind(' ') + 1) + first + " = " + value;
    std::string mixed = name + first + " = " + value;
    for (int more = std::stoi(count); more > 1; --more) {
        mixed.append(", ").append(point);
    }
    return mixed + ", stations 255 255";
}

std::string twoDigits(std::size_t value) { return '`' + hex(static_cast<int>(value), 2) + '`'; }

std::string fourDigits(int value) { return "0x" + hex(value, 4); }

/// What a table shows of two bytes.
std::string pairOf(std::span<const std::uint8_t> bytes) {
    return '`' + hex(bytes[0], 2) + ' ' + hex(bytes[1], 2) + '`';
}

std::string fieldOf(const std::string& digits) {
    FrameImage image(2, 2);
    image.setLowHigh(0, digits);
    return pairOf(image.wire(2));
}

/// The address field in a mixed read of one word, as the program makes it.
std::string mixedField(const NamedRegister& reg) {
    FrameImages images;
    const Texts lines = {wordPointLine(reg.kind, reg.number, "1")};
    if (numberRaisedBy([&] { MakeMRDataFormat(images, lines); }) != 0) {
        return "not sent";
    }
    const Bytes request = images.mixedRead.wire(offset::body + 2);
    return pairOf(std::span(request).last(2));
}

std::string bitField(const NamedRegister& reg) {
    if (!findRegisterKind(reg.kind)->bitAccess) {
        return "none";
    }
    return fieldOf(bitAddressText(reg.word(), std::stoi(reg.bit)));
}

TEST(ProtocolDocument, CodesAreThoseOfRequestsAndAnswers) {
    const ProtocolDocument document = readProtocolDocument();
    for (const Texts& row : document.rows("request | request code | answer code", 6)) {
        const bool mixed = row.at(0).ends_with("mixed");
        const Bytes request = wire(parseRequest(sentence(row[0] + (mixed ? " bits" : ""), "1")));
        Controller controller;
        EXPECT_EQ(row.at(1), twoDigits(request[offset::command])) << row[0];
        EXPECT_EQ(row.at(2), twoDigits(controller.answer(request).value()[offset::command])) << row[0];
    }
}

TEST(ProtocolDocument, KindsAreThoseOfTheRegisterMap) {
    const ProtocolDocument document = readProtocolDocument();
    const auto& rows = document.rows("kind | bits too | base | last word | numbers offered | digits", 10);
    ASSERT_EQ(rows.size(), registerKinds().size());
    for (std::size_t row = 0; row < rows.size(); ++row) {
        const RegisterKind& kind = registerKinds()[row];
        EXPECT_EQ(rows[row],
                  (Texts{std::string(kind.name), kind.bitAccess ? "yes" : "no", "0x" + hex(kind.base, 3),
                         std::to_string(kind.last), "0 .. " + std::to_string(kind.highestListed),
                         std::to_string(kind.listWidth)}));
    }
}

TEST(ProtocolDocument, AddressesAreThoseOfTheProgram) {
    const ProtocolDocument document = readProtocolDocument();
    for (const Texts& row : document.rows("register | w | word field | word field, mixed | bit field", 11)) {
        const NamedRegister reg = parseRegister(row.at(0));
        EXPECT_EQ(row, (Texts{row[0], std::to_string(reg.word()), fieldOf(wordAddressText(reg.word())),
                              mixedField(reg), bitField(reg)}));
    }
}

TEST(ProtocolDocument, LengthsAreThoseOfRequestsAndAnswers) {
    const ProtocolDocument document = readProtocolDocument();
    const auto& rows =
        document.rows("request | count | request LEN | request bytes | answer LEN | answer bytes", 13);
    for (const Texts& row : rows) {
        const NamedRequest request = parseRequest(sentence(row.at(0), row.at(1)));
        const Bytes sent = wire(request);
        Controller controller;
        const Bytes answer = controller.answer(sent).value();
        EXPECT_EQ(row, (Texts{row[0], row[1], twoDigits(sent[offset::length]), std::to_string(sent.size()),
                              twoDigits(answer[offset::length]), std::to_string(answer.size())}));
        EXPECT_EQ(static_cast<int>(answer.size()), awaitedAnswer(request)) << row[0] << ' ' << row[1];
    }
}

/// The table says how far each request goes: one point more is refused, or sent without a body.
TEST(ProtocolDocument, OneMoreThanTheLongestCannotBeSent) {
    EXPECT_TRUE(isWriteCount(Access::Bit, 253));
    EXPECT_FALSE(isWriteCount(Access::Bit, 254));
    EXPECT_TRUE(isWriteCount(Access::Word, 126));
    EXPECT_FALSE(isWriteCount(Access::Word, 127));
    EXPECT_EQ(numberRaisedBy([] { wire(parseRequest(sentence("read mixed bits", "128"))); }), 6);
    EXPECT_EQ(numberRaisedBy([] { wire(parseRequest(sentence("read mixed words", "128"))); }), 6);
    EXPECT_EQ(wire(parseRequest(sentence("write mixed bits", "85")))[offset::length], 0);
    EXPECT_EQ(wire(parseRequest(sentence("write mixed words", "63")))[offset::length], 0);
}

TEST(ProtocolDocument, CrcStepsAreThoseOfTheTable) {
    const Bytes request = wire(parseRequest("read words SR 000 count 1, stations 255 255"));
    std::uint16_t check = crc16({});
    const ProtocolDocument document = readProtocolDocument();
    const auto& rows = document.rows("step | byte | table index | table entry | CRC after it", 7);
    ASSERT_EQ(rows.size(), request.size() - 2);
    for (std::size_t step = 0; step < rows.size(); ++step) {
        const std::size_t index = (check ^ request[step]) & 0xFFU;
        check = crc16(std::span(request).first(step + 1));
        EXPECT_EQ(rows[step], (Texts{std::to_string(step + 1), twoDigits(request[step]), twoDigits(index),
                                     fourDigits(crc16Table().at(index)), fourDigits(check)}));
    }
    EXPECT_EQ(rows.back().back(), "0x" + hex(request[8], 2) + hex(request[7], 2));
}

TEST(ProtocolDocument, CrcValuesAreThoseOfTheProgram) {
    const ProtocolDocument document = readProtocolDocument();
    for (const Texts& row : document.rows("bytes | CRC | on the wire", 4)) {
        const std::uint16_t check = crc16(parseBytes(code(row.at(0))));
        EXPECT_EQ(row, (Texts{row[0], fourDigits(check), fieldOf(hex(check, 4))}));
    }
}

/// The fields of the simulation page for a request in words; a write stands behind its last point.
SimFields simFields(const NamedRequest& request, const std::string& answerData) {
    const auto& [access, first, count, values] = request.runs.front();
    SimPosition position{first.kind, first.number, first.bit};
    Texts points;
    for (const std::string& value : values) {
        points.push_back(simPointLine(
            access == Access::Bit ? SimPointForm::BitWrite : SimPointForm::WordWrite, position, value));
        position = stepForward(position, access);
    }
    return {request.stations.destination,
            request.stations.source,
            position,
            std::to_string(count),
            answerData,
            points};
}

Texts preparedPair(const NamedRequest& request, const SimFields& fields) {
    const bool bits = request.runs.front().access == Access::Bit;
    if (request.writes) {
        return bits ? Texts{MakeSimBitWriteFormat(fields), MakeSimBitWriteAnsFormat(fields)}
                    : Texts{MakeSimWordWriteFormat(fields), MakeSimWordWriteAnsFormat(fields)};
    }
    return bits ? Texts{MakeSimBitReadFormat(fields), MakeSimBitReadAnsFormat(fields)}
                : Texts{MakeSimWordReadFormat(fields), MakeSimWordReadAnsFormat(fields)};
}

TEST(ProtocolDocument, PreparedFramesAreThoseOfTheSimulationPage) {
    const ProtocolDocument document = readProtocolDocument();
    for (const Texts& row : document.rows("prepared | answer data | request | answer", 4)) {
        const NamedRequest request = parseRequest(row.at(0));
        const SimFields fields = simFields(request, request.writes ? "" : code(row.at(1)));
        EXPECT_EQ((Texts{code(row.at(2)), code(row.at(3))}), preparedPair(request, fields)) << row[0];
    }
}

} // namespace
} // namespace varda::test
