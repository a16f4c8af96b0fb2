#include "core/virtual/controller.h"

#include "core/protocol/crc16.h"
#include "core/protocol/frame.h"
#include "core/protocol/registers.h"

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

namespace varda::inline core {

namespace {

using Body = std::span<const std::uint8_t>;

constexpr auto bitsPerWord = static_cast<std::size_t>(bitsOfWord);
constexpr std::size_t wordMark = 0x40'00; // of an address field in a mixed request: the address of a word

/// How a bit or a word is stored in the memory and in a body.
struct Storage {
    std::size_t end;       ///< first address outside the memory
    std::size_t valueSize; ///< bytes of one value in a body
    void (*load)(std::span<const std::uint16_t> memory, std::size_t address, Bytes& body);
    void (*store)(std::span<std::uint16_t> memory, std::size_t address, Body value);
};

/// Addresses and words travel low byte first.
std::uint16_t lowFirst(Body bytes) { return static_cast<std::uint16_t>(lowHigh(bytes, 0)); }

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

constexpr Storage bitStorage{Controller::wordCount * bitsPerWord, valueSize(Access::Bit), loadBit, storeBit};
constexpr Storage wordStorage{Controller::wordCount, valueSize(Access::Word), loadWord, storeWord};

/// One bit or word that a request names, with its new value where the request writes.
struct Item {
    const Storage& storage;
    std::size_t address;
    Body value;
};
using Items = std::vector<Item>;

const Storage& storageOf(Access access) { return access == Access::Bit ? bitStorage : wordStorage; }

bool isWhole(const Command& command, const Frame& frame, Body request) {
    // kept: masters send one byte more than the frame of a mixed request has
    const std::size_t mostExtra = !command.access ? 1 : 0;
    return request.size() <= frame.size() + mostExtra;
}

/// Body of a single read: first address, count byte (0 stands for 256).
std::optional<Items> readRun(const Storage& storage, Body body) {
    if (body.size() != frame_size::address + 1) {
        return std::nullopt;
    }
    const std::size_t first = lowFirst(body);
    const auto count = static_cast<std::size_t>(countOfByte(body[frame_size::address]));
    Items items;
    for (std::size_t address = first; address < first + count; ++address) {
        items.push_back({storage, address, {}});
    }
    return items;
}

/// Body of a single write: first address, then one value after the other.
std::optional<Items> writeRun(const Storage& storage, Body body) {
    if (body.size() < frame_size::address + storage.valueSize ||
        (body.size() - frame_size::address) % storage.valueSize != 0) {
        return std::nullopt;
    }
    Items items;
    std::size_t address = lowFirst(body);
    for (Body rest = body.subspan(frame_size::address); !rest.empty();
         rest = rest.subspan(storage.valueSize)) {
        items.push_back({storage, address++, rest.first(storage.valueSize)});
    }
    return items;
}

/// Body of a mixed request: items of an address, marked for a word, and in a write the value.
std::optional<Items> mixedItems(bool withValues, Body body) {
    Items items;
    while (!body.empty()) {
        if (body.size() < frame_size::address) {
            return std::nullopt;
        }
        const std::size_t field = lowFirst(body);
        const Storage& storage = (field & wordMark) != 0 ? wordStorage : bitStorage;
        const std::size_t valueSize = withValues ? storage.valueSize : 0;
        if (body.size() < frame_size::address + valueSize) {
            return std::nullopt;
        }
        items.push_back({storage, field & ~wordMark, body.subspan(frame_size::address, valueSize)});
        body = body.subspan(frame_size::address + valueSize);
    }
    return items;
}

std::optional<Items> decode(const Command& command, Body body) {
    if (!command.access) {
        return mixedItems(command.writes, body);
    }
    const Storage& storage = storageOf(*command.access);
    return command.writes ? writeRun(storage, body) : readRun(storage, body);
}

bool isInside(const Item& item) { return item.address < item.storage.end; }

/// @return the body of the answer: the values read, or the one byte 0x00 that acknowledges a write
Bytes carryOut(const Command& command, const Items& items, std::span<std::uint16_t> memory) {
    Bytes body;
    for (const Item& item : items) {
        if (command.writes) {
            item.storage.store(memory, item.address, item.value);
        } else {
            item.storage.load(memory, item.address, body);
        }
    }
    if (command.writes) {
        body.push_back(0x00);
    }
    return body;
}

/// LEN is the low byte of the body's length: the answer to 256 bits carries 0x00, the one to 129 words 0x02.
Bytes answerFrame(const Frame& request, const Bytes& body) {
    Bytes frame{request.source, request.destination, static_cast<std::uint8_t>(request.code | answerMark),
                static_cast<std::uint8_t>(body.size() & 0xFF)};
    frame.insert(frame.end(), body.begin(), body.end());
    appendLowFirst(frame, crc16(frame));
    return frame;
}

} // namespace

std::optional<Bytes> Controller::answer(std::span<const std::uint8_t> request) {
    const std::optional<Frame> frame = parse(request);
    const Command* const command = frame ? findCommand(frame->code) : nullptr;
    if (command == nullptr || !isWhole(*command, *frame, request)) {
        return std::nullopt;
    }
    const auto items = decode(*command, frame->body);
    if (!items || !std::all_of(items->begin(), items->end(), isInside)) {
        return std::nullopt;
    }
    const Bytes body = carryOut(*command, *items, memory_.words());
    moveRegisters();
    return answerFrame(*frame, body);
}

std::uint16_t Controller::word(int address) const { return memory_.word(address); }

void Controller::setWord(int address, std::uint16_t value) { memory_.setWord(address, value); }

bool Controller::plugIn() noexcept { return !std::exchange(pluggedIn_, true); }

void Controller::unplug() noexcept { pluggedIn_ = false; }

void Controller::moveRegisters() {
    const int counter = GetRegisterBase("W", "SR");
    memory_.setWord(counter, static_cast<std::uint16_t>(memory_.word(counter) + 1));
    const int toggled = GetRegisterBase("B", "F") * bitsOfWord;
    memory_.setBit(toggled, !memory_.bit(toggled));
}

} // namespace varda::core
