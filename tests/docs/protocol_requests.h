#pragma once

#include "core/protocol/frame_image.h"
#include "core/protocol/mixed_requests.h"
#include "core/protocol/registers.h"
#include "docs/protocol_document.h"

#include <string>
#include <string_view>
#include <vector>

namespace varda::test {

/// A register as a page shows it: kind, number and, for bits, the bit.
struct NamedRegister {
    std::string kind;
    std::string number;
    std::string bit; ///< empty where none is named

    int word() const; ///< its word address
};

/// "M 0002.3" or "W 0000". @throws std::runtime_error for anything else
NamedRegister parseRegister(const std::string& text);

/// Bits or words that follow one another.
struct Run {
    Access access;
    NamedRegister first;
    int count;    ///< of a read
    Texts values; ///< of a write: "ON", "OFF" or four hexadecimal digits
};

/// A request in words.
struct NamedRequest {
    bool writes;
    bool mixed;
    std::vector<Run> runs; ///< one of a single request
    StationTexts stations;

    /// "read words", "write mixed" and so on: the row of the code table.
    std::string name() const;
};

/// For example "read bits M 0002.3 count 4, stations 1 0" or "write words W 0000 = 1234 ABCD, stations 255
/// 255"; a mixed request has any number of runs with commas between, "3 times ON" stands for "ON ON ON".
/// @throws std::runtime_error for anything else
NamedRequest parseRequest(const std::string& sentence);

/// The request as the program's own functions put it on the wire.
/// @param images the frame images that it is made in, with what earlier requests left there
Bytes wire(const NamedRequest& request, FrameImages& images);
Bytes wire(const NamedRequest& request);

/// Number of bytes that the program waits for after the request.
int awaitedAnswer(const NamedRequest& request);

/// Groups of two digits; ", 3 times A5 5A," stands for the group three times over.
/// @throws std::runtime_error for a group of any other length @throws RuntimeError where it is no number
Bytes parseBytes(const std::string& text);

} // namespace varda::test
