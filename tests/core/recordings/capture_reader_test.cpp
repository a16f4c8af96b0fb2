#include "core/recordings/capture_reader.h"

#include "core/base/runtime_error.h"
#include "core/recordings/capture_file.h"
#include "core/recordings/capture_loading.h"
#include "core/recordings/recordings.h"
#include "support/manual_clock.h"
#include "support/raises.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iostream>
#include <random>
#include <sstream>

namespace varda::test {
namespace {

Recording drawnRecording(std::mt19937& random) {
    Recording recording;
    std::chrono::microseconds time{0};
    for (std::size_t count = random() % 20; count > 0; --count) {
        time += std::chrono::microseconds(random() % 1'000'000);
        Bytes bytes(1 + random() % 40);
        for (std::uint8_t& byte : bytes) {
            byte = static_cast<std::uint8_t>(random());
        }
        recording.push_back({recordingBegin + time, random() % 2 == 0, bytes});
    }
    return recording;
}

std::string refusal(const std::string& file) {
    const auto error = raisedBy([&file] { readCapture(file); });
    return error && error->number() == run_time_error::typeMismatch ? error->what() : "";
}

TEST(CaptureReader, ReadsWhatTheProgramWrites) {
    constexpr unsigned seed = 16'031;
    std::cout << "seed " << seed << '\n';
    std::mt19937 random(seed);
    for (int round = 0; round < 500; ++round) {
        const Recording recording = drawnRecording(random);
        const ReadCapture read = readCapture(captureOf(recording));
        ASSERT_EQ(read.recording, recording) << "in round " << round;
        ASSERT_FALSE(read.isCut);
    }
}

TEST(CaptureReader, ReadsSeveralSectionsAsOne) {
    const Recording first = {sentAt(1ms, wordRequest)};
    const Recording second = {receivedAt(2ms, wordAnswer)};
    EXPECT_EQ(readCapture(captureOf(first) + captureOf(second)).recording.size(), 2U);
}

TEST(CaptureReader, PassesOverBlocksThatItDoesNotKnow) {
    const std::string unknown("\x05\0\0\0\x10\0\0\0abcd\x10\0\0\0", 16);
    const std::string capture = captureHeading() + unknown;
    const std::string packet = captureOf({sentAt(1ms, wordRequest)}).substr(captureHeading().size());
    EXPECT_EQ(readCapture(capture + packet).recording, (Recording{sentAt(1ms, wordRequest)}));
}

/// A packet of two bytes on an interface of another unit of time, as other programs write.
/// @param unit the option if_tsresol
std::string captureInUnit(char unit, std::uint64_t stamp) {
    const auto number32 = [](std::uint64_t value) {
        std::string text;
        for (int byte = 0; byte < 4; ++byte, value /= 256) {
            text += static_cast<char>(value % 256);
        }
        return text;
    };
    std::string capture = captureHeading();
    capture.resize(capture.size() - 20); // without its interface
    capture += std::string("\x01\0\0\0\x20\0\0\0\x93\0\0\0\0\0\0\0\x09\0\x01\0", 20) + unit +
               std::string("\0\0\0\0\0\0\0\x20\0\0\0", 11);
    return capture + number32(6) + number32(36) + number32(0) + number32(stamp >> 32U) + number32(stamp) +
           number32(2) + number32(2) + std::string("\xAA\xBB\0\0", 4) + number32(36);
}

TEST(CaptureReader, KnowsNanoseconds) {
    const std::uint64_t stamp = 1'800'000'000ULL * 1'000'000'000ULL + 5'000'000ULL;
    EXPECT_EQ(readCapture(captureInUnit('\x09', stamp)).recording,
              (Recording{receivedAt(5ms, {0xAA, 0xBB})}));
}

/// A second is so many times halved.
TEST(CaptureReader, KnowsUnitsThatArePowersOfTwo) {
    const std::uint64_t half = 1ULL << 19U;
    EXPECT_EQ(readCapture(captureInUnit('\x94', (1'800'000'000ULL << 20U) + half)).recording,
              (Recording{receivedAt(500ms, {0xAA, 0xBB})}));
    EXPECT_EQ(readCapture(captureInUnit('\x80', 1'800'000'007ULL)).recording,
              (Recording{receivedAt(7s, {0xAA, 0xBB})}))
        << "whole seconds";
}

TEST(CaptureReader, SortsByTime) {
    EXPECT_EQ(readCapture(captureOf({sentAt(5ms, {5}), sentAt(1ms, {1})})).recording,
              (Recording{sentAt(1ms, {1}), sentAt(5ms, {5})}));
}

TEST(CaptureReader, LeavesPacketsOutThatWereNotKeptWhole) {
    const Bytes bytes = {1, 2, 3};
    const std::string capture = captureHeading() + captured({recordingBegin, true, bytes, 1000, ""});
    const ReadCapture read = readCapture(capture);
    EXPECT_TRUE(read.recording.empty());
    EXPECT_EQ(read.incomplete, 1U);
}

TEST(CaptureReader, ReadsAFileThatEndsInAPacketUpToThere) {
    const Recording recording = {sentAt(1ms, wordRequest), receivedAt(2ms, wordAnswer)};
    const std::string whole = captureOf(recording);
    const std::size_t heading = captureHeading().size();
    const std::size_t two = captureOf({recording.front()}).size();
    for (std::size_t size = heading + 1; size < whole.size(); ++size) {
        const ReadCapture read = readCapture(whole.substr(0, size));
        ASSERT_EQ(read.recording.size(), size >= two ? 1U : 0U) << size;
        ASSERT_EQ(read.isCut, size != two) << size;
    }
}

TEST(CaptureReader, ReadsTheSameWhereverItsPiecesEnd) {
    constexpr unsigned seed = 16'033;
    std::cout << "seed " << seed << '\n';
    std::mt19937 random(seed);
    for (int round = 0; round < 500; ++round) {
        const std::string whole = captureOf(drawnRecording(random));
        const std::string file = whole.substr(0, whole.size() - random() % 20);
        CaptureReader reader;
        for (std::size_t place = 0; place < file.size();) {
            const std::string piece = file.substr(place, 1 + random() % 100);
            reader.take(piece);
            place += piece.size();
        }
        const ReadCapture expected = readCapture(file);
        EXPECT_EQ(reader.packets(), expected.recording.size()) << "in round " << round;
        const ReadCapture read = reader.finish();
        ASSERT_EQ(read.recording, expected.recording) << "in round " << round;
        ASSERT_EQ(read.isCut, expected.isCut) << "in round " << round;
    }
}

TEST(CaptureReader, NamesThePlaceOfDamageInALaterPiece) {
    std::string torn = captureOf({sentAt(1ms, wordRequest), sentAt(2ms, wordRequest)});
    const std::size_t second = captureOf({sentAt(1ms, wordRequest)}).size();
    torn[second + 4] = 13;
    CaptureReader reader;
    reader.take(torn.substr(0, second - 3));
    const auto error = raisedBy([&] { reader.take(torn.substr(second - 3)); });
    ASSERT_TRUE(error);
    EXPECT_NE(std::string(error->what()).find("damaged at byte " + std::to_string(second)), std::string::npos)
        << error->what();
}

TEST(CaptureReader, SaysWhatIsWrong) {
    EXPECT_EQ(refusal("hello"),
              "This is no capture that can be read: it does not begin as a pcapng file does.");
    EXPECT_NE(refusal(""), "");
    std::string other = captureHeading();
    std::reverse(other.begin() + 4, other.begin() + 8);
    std::reverse(other.begin() + 8, other.begin() + 12);
    EXPECT_NE(refusal(other).find("another byte order"), std::string::npos);
    std::string torn = captureOf({sentAt(1ms, wordRequest)});
    torn[captureHeading().size() + 4] = 13;
    EXPECT_NE(refusal(torn).find("damaged at byte"), std::string::npos);
}

TEST(CaptureReader, DamagedFilesAreReadOrRefused) {
    constexpr unsigned seed = 16'032;
    std::cout << "seed " << seed << '\n';
    std::mt19937 random(seed);
    for (int round = 0; round < 50'000; ++round) {
        std::string capture = captureOf({sentAt(1ms, wordRequest), receivedAt(2ms, wordAnswer)});
        for (std::size_t damages = 1 + random() % 6; damages > 0; --damages) {
            capture[random() % capture.size()] = static_cast<char>(random());
        }
        if (random() % 4 == 0) {
            capture.resize(random() % capture.size());
        }
        const auto error = raisedBy([&capture] { exchangesOf(readCapture(capture).recording); });
        ASSERT_TRUE(!error || error->number() == run_time_error::typeMismatch) << "in round " << round;
    }
}

TEST(CaptureReader, NamesTheFile) {
    const TemporaryFolder folder;
    const std::string path = folder.file("none.pcapng");
    const auto missing = raisedBy([&] { loadCapture(path); });
    ASSERT_TRUE(missing);
    EXPECT_NE(std::string(missing->what()).find(path), std::string::npos);
    EXPECT_EQ(std::string(missing->what()).find(".."), std::string::npos) << missing->what();
    EXPECT_TRUE(raisedBy([&] { loadCapture(folder.path()); }));
    std::ofstream(path) << "hello";
    EXPECT_NE(std::string(raisedBy([&] { loadCapture(path); })->what()).find(path), std::string::npos);
}

/// Some 800 kB: more than one piece, whose ends fall into blocks.
TEST(CaptureLoading, ReadsALargeFilePieceByPiece) {
    const TemporaryFolder folder;
    const std::string path = folder.file("large.pcapng");
    Recording recording;
    for (int count = 0; count < 10'000; ++count) {
        recording.push_back(sentAt(std::chrono::milliseconds(count), wordRequest));
    }
    const std::string file = captureOf(recording);
    std::ofstream(path, std::ios::binary) << file;
    CaptureLoading loading(path);
    std::size_t pieces = 1;
    while (loading.goOn()) {
        EXPECT_EQ(loading.bytesRead(), pieces * CaptureLoading::piece);
        ++pieces;
    }
    EXPECT_EQ(pieces, file.size() / CaptureLoading::piece + 1);
    EXPECT_GT(pieces, 2U);
    EXPECT_EQ(loading.bytesRead(), file.size());
    EXPECT_EQ(loading.finish().recording, recording);
}

class CaptureFileTest : public testing::Test {
protected:
    bool write(const RecordedBurst& burst) {
        return file.write({burst.time, burst.isSent, burst.bytes, burst.bytes.size(), ""});
    }

    TemporaryFolder folder;
    ManualClock clock;
    CaptureFile file{clock};
    const std::string path = folder.file("line.pcapng");
};

TEST_F(CaptureFileTest, IsWholeAfterEachPacket) {
    file.open(path);
    EXPECT_TRUE(loadCapture(path).recording.empty());
    EXPECT_TRUE(write(sentAt(1ms, wordRequest)));
    EXPECT_EQ(loadCapture(path).recording.size(), 1U);
    EXPECT_TRUE(write(receivedAt(2ms, wordAnswer)));
    clock.advance(1000);
    EXPECT_EQ(loadCapture(path).recording,
              (Recording{sentAt(1ms, wordRequest), receivedAt(2ms, wordAnswer)}));
    file.close();
    EXPECT_FALSE(loadCapture(path).isCut);
    EXPECT_FALSE(write(sentAt(3ms, wordRequest)));
}

TEST_F(CaptureFileTest, BeginsTheFileAnew) {
    std::ofstream(path) << "something else";
    file.open(path);
    EXPECT_TRUE(loadCapture(path).recording.empty());
}

TEST_F(CaptureFileTest, RefusesAFolderThatIsNotThere) {
    EXPECT_NE(numberRaisedBy([&] { file.open(folder.file("none/line.pcapng")); }), 0);
    EXPECT_FALSE(file.isOpen());
}

} // namespace
} // namespace varda::test
