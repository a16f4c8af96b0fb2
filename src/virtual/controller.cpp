#include "virtual/controller.h"

#include "link/crc16.h"
#include "link/registers.h"
#include "platform/runtime_error.h"

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

namespace varda {

namespace {

using Body = std::span<const std::uint8_t>;

// A frame: DA, SA, CMD, LEN, LEN body bytes, CRC low, CRC high.
constexpr std::size_t headerSize = 4;
constexpr std::size_t crcSize = 2;
constexpr std::size_t addressSize = 2;
constexpr std::size_t bitsPerWord = 16;
constexpr std::uint8_t answerMark = 0x80; // what an answer's code has more than its request's
constexpr std::size_t wordMark = 0x40'00; // of an address field in a mixed request: the address of a word

/// How a bit or a word stands in the memory and in a body.
struct Access {
    std::size_t end;       ///< first address outside the memory
    std::size_t valueSize; ///< bytes of one value in a body
    void (*load)(std::span<const std::uint16_t> memory, std::size_t address, Bytes& body);
    void (*store)(std::span<std::uint16_t> memory, std::size_t address, Body value);
};

/// Addresses and words travel low byte first.
std::uint16_t lowFirst(Body bytes) { return static_cast<std::uint16_t>(bytes[0] | bytes[1] << 8); }

void appendLowFirst(Bytes& bytes, std::uint16_t value) {
    bytes.push_back(static_cast<std::uint8_t>(value & 0xFF));
    bytes.push_back(static_cast<std::uint8_t>(value >> 8));
}

std::uint16_t bitMask(std::size_t bitAddress) {
    return static_cast<std::uint16_t>(1U << (bitAddress % bitsPerWord));
}

void loadBit(std::span<const std::uint16_t> memory, std::size_t address, Bytes& body) {
    const bool on = (memory[address / bitsPerWord] & bitMask(address)) != 0;
    body.push_back(on ? 0xFF : 0x00);
}

void storeBit(std::span<std::uint16_t> memory, std::size_t address, Body value) {
    std::uint16_t& word = memory[address / bitsPerWord];
    const int others = word & ~bitMask(address);
    word = static_cast<std::uint16_t>(value[0] == 0 ? others : others | bitMask(address));
}

void loadWord(std::span<const std::uint16_t> memory, std::size_t address, Bytes& body) {
    appendLowFirst(body, memory[address]);
}

void storeWord(std::span<std::uint16_t> memory, std::size_t address, Body value) {
    memory[address] = lowFirst(value);
}

constexpr Access bitAccess{Controller::wordCount * bitsPerWord, 1, loadBit, storeBit};
constexpr Access wordAccess{Controller::wordCount, 2, loadWord, storeWord};

/// One bit or word that a request names, with its new value where the request writes.
struct Point {
    const Access& access;
    std::size_t address;
    Body value;
};
using Points = std::vector<Point>;

struct Command {
    std::uint8_t code;
    const Access* access; ///< null: mixed, every item says itself what it names
    bool writes;
};

constexpr std::array<Command, 6> commands{{
    {0x21, &bitAccess, false},
    {0x22, &bitAccess, true},
    {0x23, &wordAccess, false},
    {0x24, &wordAccess, true},
    {0x25, nullptr, false},
    {0x26, nullptr, true},
}};

const Command* findCommand(std::uint8_t code) {
    const auto found = std::find_if(commands.begin(), commands.end(),
                                    [code](const Command& command) { return command.code == code; });
    return found == commands.end() ? nullptr : &*found;
}

/// Length and CRC, of a request that has at least a header and a CRC.
bool isWhole(const Command& command, Body request) {
    const std::size_t checked = headerSize + request[3];
    // kept: masters send one byte more than the frame of a mixed request has
    const std::size_t mostExtra = command.access == nullptr ? 1 : 0;
    const std::size_t size = checked + crcSize;
    return request.size() >= size && request.size() <= size + mostExtra &&
           crc16(request.first(checked)) == lowFirst(request.subspan(checked, crcSize));
}

/// Body of a single read: first address, count byte (0 stands for 256).
std::optional<Points> readRun(const Access& access, Body body) {
    if (body.size() != addressSize + 1) {
        return std::nullopt;
    }
    const std::size_t first = lowFirst(body);
    const std::size_t count = body[addressSize] == 0 ? 256 : body[addressSize];
    Points points;
    for (std::size_t address = first; address < first + count; ++address) {
        points.push_back({access, address, {}});
    }
    return points;
}

/// Body of a single write: first address, then one value after the other.
std::optional<Points> writeRun(const Access& access, Body body) {
    if (body.size() < addressSize + access.valueSize || (body.size() - addressSize) % access.valueSize != 0) {
        return std::nullopt;
    }
    Points points;
    std::size_t address = lowFirst(body);
    for (Body rest = body.subspan(addressSize); !rest.empty(); rest = rest.subspan(access.valueSize)) {
        points.push_back({access, address++, rest.first(access.valueSize)});
    }
    return points;
}

/// Body of a mixed request: items of an address, marked for a word, and in a write the value.
std::optional<Points> mixedItems(bool withValues, Body body) {
    Points points;
    while (!body.empty()) {
        if (body.size() < addressSize) {
            return std::nullopt;
        }
        const std::size_t field = lowFirst(body);
        const Access& access = (field & wordMark) != 0 ? wordAccess : bitAccess;
        const std::size_t valueSize = withValues ? access.valueSize : 0;
        if (body.size() < addressSize + valueSize) {
            return std::nullopt;
        }
        points.push_back({access, field & ~wordMark, body.subspan(addressSize, valueSize)});
        body = body.subspan(addressSize + valueSize);
    }
    return points;
}

std::optional<Points> decode(const Command& command, Body body) {
    if (command.access == nullptr) {
        return mixedItems(command.writes, body);
    }
    return command.writes ? writeRun(*command.access, body) : readRun(*command.access, body);
}

bool isInside(const Point& point) { return point.address < point.access.end; }

/// @return the body of the answer: the values read, or the one byte 0x00 that acknowledges a write
Bytes carryOut(const Command& command, const Points& points, std::span<std::uint16_t> memory) {
    Bytes body;
    for (const Point& point : points) {
        if (command.writes) {
            point.access.store(memory, point.address, point.value);
        } else {
            point.access.load(memory, point.address, body);
        }
    }
    if (command.writes) {
        body.push_back(0x00);
    }
    return body;
}

/// LEN is the low byte of the body's length: the answer to 256 bits carries 0x00, the one to 129 words 0x02.
Bytes answerFrame(Body request, const Bytes& body) {
    Bytes frame{request[1], request[0], static_cast<std::uint8_t>(request[2] | answerMark),
                static_cast<std::uint8_t>(body.size() & 0xFF)};
    frame.insert(frame.end(), body.begin(), body.end());
    appendLowFirst(frame, crc16(frame));
    return frame;
}

std::size_t checkedIndex(int address) {
    if (address < 0 || address >= Controller::wordCount) {
        throw subscriptOutOfRange();
    }
    return static_cast<std::size_t>(address);
}

} // namespace

std::optional<Bytes> Controller::answer(std::span<const std::uint8_t> request) {
    if (request.size() < headerSize + crcSize) {
        return std::nullopt;
    }
    const Command* command = findCommand(request[2]);
    if (command == nullptr || !isWhole(*command, request)) {
        return std::nullopt;
    }
    const auto points = decode(*command, request.subspan(headerSize, request[3]));
    if (!points || !std::all_of(points->begin(), points->end(), isInside)) {
        return std::nullopt;
    }
    const Bytes body = carryOut(*command, *points, memory_);
    moveRegisters();
    return answerFrame(request, body);
}

std::uint16_t Controller::word(int address) const { return memory_[checkedIndex(address)]; }

void Controller::setWord(int address, std::uint16_t value) { memory_[checkedIndex(address)] = value; }

bool Controller::plugIn() noexcept { return !std::exchange(pluggedIn_, true); }

void Controller::unplug() noexcept { pluggedIn_ = false; }

void Controller::moveRegisters() {
    ++memory_[checkedIndex(GetRegisterBase("W", "SR"))];
    memory_[checkedIndex(GetRegisterBase("B", "F"))] ^= bitMask(0);
}

} // namespace varda
