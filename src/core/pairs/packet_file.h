#pragma once

#include <cstdint>
#include <string>

namespace varda::inline core {

class PacketTable;
class ProfileFile;

enum class PacketLoad : std::uint8_t {
    NoTotal,    ///< no total: the table is as it was
    NoText,     ///< a file that is no text: the table is as it was, packetFileCorrupted is to be shown
    Corrupted,  ///< a total below 1: the table is empty, packetFileCorrupted is to be shown
    Incomplete, ///< ended in silence at the first entry that is missing or empty
    Complete,
};

/// Text of the message box, titled "Confirm", for PacketLoad::NoText and PacketLoad::Corrupted.
constexpr const char* packetFileCorrupted = "Data is incorrect or corrupted. Please Check Data.";

/// Writes as many pairs as there are requests: "Total" in section "Information", the requests and answers
/// under their row numbers in the sections "Receive" and "Send". Other keys of the file stay, also those of a
/// larger table saved earlier.
/// @return false where a request has no answer; what comes before that answer has been written
bool storePackets(const PacketTable& table, ProfileFile& file);

/// Replaces the table by the pairs of a file. Ending incomplete it may leave one request without an answer.
/// @throws RuntimeError 13 where the total is no number, 6 where it is beyond 2147483647; the table is empty
///         then
PacketLoad loadPackets(PacketTable& table, const ProfileFile& file);

} // namespace varda::core
