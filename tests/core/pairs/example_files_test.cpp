#include "core/files/profile_file.h"
#include "core/pairs/packet_builders.h"
#include "core/pairs/packet_file.h"
#include "core/pairs/packet_table.h"
#include "core/pairs/sim_points.h"
#include "core/protocol/crc16.h"
#include "core/protocol/frame_image.h"
#include "core/runs/scenario_file.h"
#include "core/runs/scenario_frame.h"
#include "core/virtual/controller.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <set>

/// The files that come with the program.
namespace varda {
namespace {

constexpr std::size_t envelope = 6; ///< bytes of a frame without its body

std::vector<std::string> examples(const std::string& extension) {
    std::vector<std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator(VARDA_DATA_FOLDER)) {
        if (entry.path().extension() == extension) {
            files.push_back(entry.path().string());
        }
    }
    std::ranges::sort(files);
    return files;
}

PacketTable loaded(const std::string& file) {
    PacketTable table;
    EXPECT_EQ(loadPackets(table, ProfileFile::load(file)), PacketLoad::Complete);
    EXPECT_EQ(table.requests().size(), table.answers().size());
    return table;
}

/// Calls `judge` with each request and its answer.
template <typename Judge>
void forEachPair(Judge&& judge) {
    for (const std::string& file : examples(".ini")) {
        const PacketTable table = loaded(file);
        for (std::size_t row = 0; row < table.requests().size(); ++row) {
            SCOPED_TRACE(testing::Message() << file << ", row " << row);
            judge(table.requests()[row], table.answers()[row]);
        }
    }
}

/// An answer as a controller gives it: stations exchanged, LEN counts the body, the check covers all of it.
bool isControllersAnswer(const Bytes& request, const Bytes& answer) {
    return answer[offset::destination] == request[offset::source] &&
           answer[offset::source] == request[offset::destination] &&
           answer[offset::length] + envelope == answer.size() && crc16(answer) == 0;
}

/// An answer to a read as the simulation page prepares it from the request and the answer's data.
std::string pagesAnswer(const std::string& request, const std::string& answer) {
    const PreparedRequest prepared = parsePreparedRequest(request);
    const SimFields fields = {
        prepared.destination, prepared.source, {}, prepared.count, preparedAnswerData(answer), {}};
    return prepared.mode == "Bit Read"    ? MakeSimBitReadAnsFormat(fields)
           : prepared.mode == "Word Read" ? MakeSimWordReadAnsFormat(fields)
                                          : std::string();
}

TEST(ExampleFiles, AreTwoPacketFilesAndAScenario) {
    EXPECT_EQ(examples(".ini").size(), 2U);
    EXPECT_EQ(examples(".scn").size(), 1U);
}

TEST(ExampleFiles, PacketFilesAreSavedAgainByteForByte) {
    const test::TemporaryFolder folder;
    for (const std::string& file : examples(".ini")) {
        const std::string copy = folder.file(std::filesystem::path(file).filename().string());
        ProfileFile saved;
        storePackets(loaded(file), saved);
        saved.save(copy);
        EXPECT_EQ(test::bytesOf(copy), test::bytesOf(file)) << file;
    }
}

TEST(ExampleFiles, NoRequestIsHiddenBehindAnEqualOne) {
    for (const std::string& file : examples(".ini")) {
        const PacketTable table = loaded(file);
        const std::set<std::string> different(table.requests().begin(), table.requests().end());
        EXPECT_EQ(different.size(), table.requests().size()) << file;
    }
}

TEST(ExampleFiles, AControllerTakesEveryRequestAndAnswersAtTheSameLength) {
    forEachPair([](const std::string& request, const std::string& answer) {
        const auto expected = Controller().answer(bytesOfFrameText(request)); // looks at code, LEN and check
        ASSERT_TRUE(expected.has_value()) << request;
        const Bytes bytes = bytesOfFrameText(answer);
        ASSERT_EQ(bytes.size(), expected->size()) << answer;
        EXPECT_EQ(bytes[offset::command], expected->at(offset::command)) << answer;
    });
}

TEST(ExampleFiles, EveryAnswerIsOneOfAControllerOrOfTheSimulationPage) {
    forEachPair([](const std::string& request, const std::string& answer) {
        const Bytes asked = bytesOfFrameText(request);
        const Bytes bytes = bytesOfFrameText(answer);
        ASSERT_GT(bytes.size(), envelope);
        EXPECT_TRUE(isControllersAnswer(asked, bytes) || pagesAnswer(request, answer) == answer) << answer;
    });
}

TEST(ExampleFiles, WritesPlayedInTheirOrderGetTheSameAnswersFromTheEmbeddedController) {
    const PacketTable table = loaded(VARDA_DATA_FOLDER "/example-writes.ini");
    Controller controller;
    for (std::size_t row = 0; row < table.requests().size(); ++row) {
        EXPECT_EQ(controller.answer(bytesOfFrameText(table.requests()[row])),
                  bytesOfFrameText(table.answers()[row]))
            << row;
    }
}

TEST(ExampleFiles, WritesHoldEveryKindOfWriteAndMixedRequest) {
    const PacketTable table = loaded(VARDA_DATA_FOLDER "/example-writes.ini");
    std::set<std::uint8_t> codes;
    for (const std::string& request : table.requests()) {
        codes.insert(bytesOfFrameText(request).at(offset::command));
    }
    for (const std::uint8_t code :
         {command::bitWrite, command::wordWrite, command::mixedRead, command::mixedWrite}) {
        EXPECT_TRUE(codes.contains(code)) << int{code};
    }
}

TEST(ExampleFiles, EveryLineOfAScenarioIsAnsweredAtTheLengthThatIsWaitedFor) {
    for (const std::string& file : examples(".scn")) {
        const auto scenario = loadScenario(ProfileFile::load(file));
        ASSERT_TRUE(scenario.has_value() && scenario->isComplete) << file;
        for (const std::string& line : scenario->lines) {
            const Bytes frame = scenarioFrame(line);
            const auto answer = Controller().answer(frame);
            ASSERT_TRUE(answer.has_value()) << line;
            EXPECT_EQ(scenarioAnswerLength(frame), static_cast<int>(answer->size())) << line;
        }
    }
}

} // namespace
} // namespace varda
