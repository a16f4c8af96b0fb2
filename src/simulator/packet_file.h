#pragma once

#include <cstdint>
#include <string>

namespace varda {

class PacketTable;

enum class PacketLoad : std::uint8_t {
    NoTotal,    ///< no total, or a file that cannot be read: the table is as it was
    Corrupted,  ///< a total below 1: the table is empty, packetFileCorrupted is to be shown
    Incomplete, ///< ended in silence at the first entry that is missing or empty
    Complete,
};

/// Text of the message box, titled "Confirm", for PacketLoad::Corrupted.
constexpr const char* packetFileCorrupted = "Data is incorrect or corrupted. Please Check Data.";

/// Saves as many pairs as there are requests: "Total" in section "Information", the requests and answers
/// under their row numbers in the sections "Receive" and "Send". Other keys of the file stay, also those of a
/// larger table saved earlier.
/// @throws RuntimeError 9 where a request has no answer, after the file was saved with what comes before that
///         answer; the errors of ProfileFile::save, then the file is as it was
void savePackets(const PacketTable& table, const std::string& path);

/// Replaces the table by the pairs of a file. Ending incomplete it may leave one request without an answer.
/// @throws RuntimeError 13 where the total is no number, 6 where it is beyond 2147483647; the table is empty
///         then
PacketLoad loadPackets(PacketTable& table, const std::string& path);

} // namespace varda
