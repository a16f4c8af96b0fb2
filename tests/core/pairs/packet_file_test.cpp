#include "core/pairs/packet_file.h"

#include "core/files/profile_file.h"
#include "core/pairs/packet_table.h"
#include "support/raises.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <ostream>

namespace varda {

void PrintTo(PacketLoad load, std::ostream* out) { *out << static_cast<int>(load); }

namespace {

using test::numberRaisedBy;
using Texts = std::vector<std::string>;

class PacketFile : public testing::Test {
protected:
    /// @return whether every request had its answer
    bool save() const {
        ProfileFile file = ProfileFile::load(path);
        const bool complete = storePackets(table, file);
        file.save(path);
        return complete;
    }
    PacketLoad load() { return loadPackets(table, ProfileFile::load(path)); }
    PacketLoad load(const std::string& text) {
        test::writeBytes(path, text);
        return load();
    }
    std::string read() const { return test::bytesOf(path); }

    test::TemporaryFolder folder;
    std::string path = folder.file("packets.ini");
    PacketTable table;
};

TEST_F(PacketFile, OnePairIsSavedUnderKeyZero) {
    table.addPair("01002103C30C084379", "0100A103FF00FFC62D");
    save();
    EXPECT_EQ(read(), "[Information]\r\nTotal=1\r\n[Receive]\r\n0=01002103C30C084379\r\n"
                      "[Send]\r\n0=0100A103FF00FFC62D\r\n");
}

TEST_F(PacketFile, EmptyTableSavesATotalOfZeroAndNoKeys) {
    save();
    EXPECT_EQ(read(), "[Information]\r\nTotal=0\r\n");
}

TEST_F(PacketFile, FileOfAnEmptyTableEmptiesTheTableAndIsCorrupted) {
    save();
    table.addPair("01", "AA");
    EXPECT_EQ(load(), PacketLoad::Corrupted);
    EXPECT_TRUE(table.requests().empty());
    EXPECT_TRUE(table.answers().empty());
    EXPECT_STREQ(packetFileCorrupted, "Data is incorrect or corrupted. Please Check Data.");
}

TEST_F(PacketFile, KeysCarryNoPadding) {
    Texts requests;
    for (int row = 0; row < 12; ++row) {
        requests.push_back(std::string("R").append(std::to_string(row)));
    }
    table.replace(requests, requests);
    save();
    EXPECT_NE(read().find("\r\n9=R9\r\n10=R10\r\n11=R11\r\n[Send]\r\n0=R0\r\n"), std::string::npos) << read();
    table.clear();
    EXPECT_EQ(load(), PacketLoad::Complete);
    EXPECT_EQ(table.requests(), requests);
    EXPECT_EQ(table.answers(), requests);
    EXPECT_EQ(table.find("R11"), std::optional<std::size_t>(11));
}

TEST_F(PacketFile, SmallerTableLeavesTheOldKeysInTheFile) {
    table.replace({"A", "B", "C"}, {"1", "2", "3"});
    save();
    table.replace({"D"}, {"4"});
    save();
    EXPECT_EQ(read(), "[Information]\r\nTotal=1\r\n[Receive]\r\n0=D\r\n1=B\r\n2=C\r\n"
                      "[Send]\r\n0=4\r\n1=2\r\n2=3\r\n");
    table.clear();
    EXPECT_EQ(load(), PacketLoad::Complete);
    EXPECT_EQ(table.requests(), Texts{"D"});
}

TEST_F(PacketFile, AnswersWithoutARequestAreNotSaved) {
    table.replace({"A"}, {"1", "2", "3"});
    save();
    EXPECT_EQ(read(), "[Information]\r\nTotal=1\r\n[Receive]\r\n0=A\r\n[Send]\r\n0=1\r\n");
}

TEST_F(PacketFile, MissingAnswerEndsTheSaveAndTheFileKeepsWhatWasWritten) {
    table.replace({"A", "B", "C"}, {"1"});
    EXPECT_FALSE(save());
    EXPECT_EQ(read(), "[Information]\r\nTotal=3\r\n[Receive]\r\n0=A\r\n1=B\r\n[Send]\r\n0=1\r\n");
}

TEST_F(PacketFile, FileThatCannotBeReadIsNotOverwritten) {
    const std::string notText("\0\1", 2);
    test::writeBytes(path, notText);
    table.addPair("01", "AA");
    EXPECT_NE(numberRaisedBy([this] { save(); }), 0);
    EXPECT_EQ(read(), notText);
}

TEST_F(PacketFile, MissingFileLeavesTheTableAsItIs) {
    table.addPair("01", "AA");
    EXPECT_EQ(load(), PacketLoad::NoTotal);
    EXPECT_EQ(table.requests(), Texts{"01"});
}

TEST_F(PacketFile, MissingOrEmptyTotalLeavesTheTableAsItIs) {
    table.addPair("01", "AA");
    for (const char* const text : {"", "[Information]\r\n", "[Information]\r\nTotal=\r\n",
                                   "[Information]\r\nTotal=\"\"\r\n", "Total=1\r\n[Receive]\r\n0=A\r\n"}) {
        EXPECT_EQ(load(text), PacketLoad::NoTotal) << text;
        EXPECT_EQ(table.requests(), Texts{"01"});
    }
}

TEST_F(PacketFile, FileThatIsNoTextLeavesTheTableAsItIsAndIsTold) {
    table.addPair("01", "AA");
    for (const std::string& noText :
         {std::string("[Information]\nTotal=1\n[Receive]\n0=A\0B\n[Send]\n0=1\n", 49),
          std::string("GIF89a\1\2"), std::string("\xFF\xFE[", 3)}) {
        EXPECT_EQ(load(noText), PacketLoad::NoText) << noText;
        EXPECT_EQ(table.requests(), Texts{"01"});
    }
}

TEST_F(PacketFile, ControlCharactersBesideTheTotalDoNoHarm) {
    EXPECT_EQ(load("; \1\n[Information]\nTotal=1\n[Receive]\n0=A\n[Send]\n0=1\n"), PacketLoad::Complete);
}

TEST_F(PacketFile, FileThatCannotBeReadLeavesTheTableAsItIs) {
    table.addPair("01", "AA");
    EXPECT_EQ(loadPackets(table, ProfileFile::load(folder.path())), PacketLoad::NoTotal);
    EXPECT_EQ(table.requests(), Texts{"01"});
}

TEST_F(PacketFile, TotalBelowOneEmptiesTheTable) {
    for (const char* const total : {"0", "-1", "-32769"}) {
        table.addPair("01", "AA");
        EXPECT_EQ(load("[Information]\nTotal=" + std::string(total) + "\n[Receive]\n0=A\n[Send]\n0=1\n"),
                  PacketLoad::Corrupted);
        EXPECT_TRUE(table.requests().empty());
    }
}

TEST_F(PacketFile, TotalThatIsNoNumberIsATypeMismatchWithTheTableEmptied) {
    for (const char* const total : {"three", "3x", "1.5", "' '"}) {
        table.addPair("01", "AA");
        test::writeBytes(path,
                         "[Information]\nTotal=" + std::string(total) + "\n[Receive]\n0=A\n[Send]\n0=1\n");
        EXPECT_EQ(numberRaisedBy([this] { load(); }), 13) << total;
        EXPECT_TRUE(table.requests().empty());
        EXPECT_TRUE(table.answers().empty());
    }
}

TEST_F(PacketFile, TotalBeyondEveryNumberIsAnOverflowWithTheTableEmptied) {
    table.addPair("01", "AA");
    test::writeBytes(path, "[Information]\nTotal=99999999999\n");
    EXPECT_EQ(numberRaisedBy([this] { load(); }), 6);
    EXPECT_TRUE(table.requests().empty());
}

TEST_F(PacketFile, TotalAbove32767IsTakenAsItIsRead) {
    const Texts requests(33000, "A");
    table.replace(requests, requests);
    save();
    table.clear();
    EXPECT_EQ(load(), PacketLoad::Complete);
    EXPECT_EQ(table.requests().size(), 33000U);
}

TEST_F(PacketFile, LoadReplacesTheTable) {
    table.addPair("old", "old");
    EXPECT_EQ(load("[Information]\nTotal=1\n[Receive]\n0=A\n[Send]\n0=1\n"), PacketLoad::Complete);
    EXPECT_EQ(table.requests(), Texts{"A"});
    EXPECT_EQ(table.answers(), Texts{"1"});
    EXPECT_EQ(table.find("old"), std::nullopt);
}

TEST_F(PacketFile, TotalOfThreeWithTwoPairsLoadsTwoAndStopsInSilence) {
    EXPECT_EQ(load("[Information]\nTotal=3\n[Receive]\n0=A\n1=B\n[Send]\n0=1\n1=2\n"),
              PacketLoad::Incomplete);
    EXPECT_EQ(table.requests(), (Texts{"A", "B"}));
    EXPECT_EQ(table.answers(), (Texts{"1", "2"}));
}

TEST_F(PacketFile, HugeTotalStopsAtTheFirstMissingKey) {
    EXPECT_EQ(load("[Information]\nTotal=2147483647\n[Receive]\n0=A\n[Send]\n0=1\n"), PacketLoad::Incomplete);
    EXPECT_EQ(table.requests(), Texts{"A"});
}

TEST_F(PacketFile, MissingAnswerLeavesOneRequestMore) {
    for (const char* const send : {"", "1=\n", "2=3\n"}) {
        EXPECT_EQ(load("[Information]\nTotal=3\n[Receive]\n0=A\n1=B\n2=C\n[Send]\n0=1\n" + std::string(send)),
                  PacketLoad::Incomplete);
        EXPECT_EQ(table.requests(), (Texts{"A", "B"}));
        EXPECT_EQ(table.answers(), Texts{"1"});
    }
}

TEST_F(PacketFile, KeysBeyondTheTotalAreNotRead) {
    EXPECT_EQ(load("[Information]\nTotal=1\n[Receive]\n0=A\n1=B\n[Send]\n0=1\n1=2\n"), PacketLoad::Complete);
    EXPECT_EQ(table.requests(), Texts{"A"});
}

TEST_F(PacketFile, OrderOfTheLinesDoesNotMatter) {
    EXPECT_EQ(load("[Send]\n1=2\n0=1\n[Receive]\n1=B\n0=A\n[Information]\nTotal=2\n"), PacketLoad::Complete);
    EXPECT_EQ(table.requests(), (Texts{"A", "B"}));
    EXPECT_EQ(table.answers(), (Texts{"1", "2"}));
}

TEST_F(PacketFile, BlanksAroundValuesAreTrimmedWithinQuotesToo) {
    EXPECT_EQ(load("[Information]\nTotal=  2 \n[Receive]\n0 =  A  \n1=\" B \"\n[Send]\n0= 1\n1='  '\n"),
              PacketLoad::Complete);
    EXPECT_EQ(table.requests(), (Texts{"A", "B"}));
    EXPECT_EQ(table.answers(), (Texts{"1", ""}));
}

TEST_F(PacketFile, ValueLongerThan1023CharactersIsCut) {
    const std::string full(1023, 'A');
    const std::string longer(1024, 'B');
    load("[Information]\nTotal=1\n[Receive]\n0=" + full + "\n[Send]\n0=" + longer + "\n");
    EXPECT_EQ(table.requests(), Texts{full});
    EXPECT_EQ(table.answers(), Texts{longer.substr(1)});
}

} // namespace
} // namespace varda
