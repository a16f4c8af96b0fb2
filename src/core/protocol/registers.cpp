#include "core/protocol/registers.h"

#include "core/base/conversion.h"
#include "core/base/runtime_error.h"
#include "core/protocol/hex_text.h"

#include <algorithm>
#include <array>

namespace varda::inline core {
namespace {

constexpr std::array<RegisterKind, 10> kinds = {{
    // name  bits   base  last  listed sim  width next   previous
    {"R", true, 0, 127, 127, 127, 4, "L", "ERR"},
    {"L", true, 128, 191, 63, 64, 4, "M",
     "R"}, // kept: the simulator accepts one number more than the block holds
    {"M", true, 192, 319, 127, 127, 4, "K", "L"},
    {"K", true, 320, 447, 127, 127, 4, "F", "K"}, // kept: stepping back from "K" stays at "K"
    {"F", true, 448, 463, 15, 15, 4, "TC", "K"},
    {"TC", true, 464, 511, 255, 255, 3, "W", "F"}, // kept: numbers 48 .. 255 lie in the block of "W"
    {"W", false, 512, 2559, 2047, 2047, 4, "SV", "TC"},
    {"SV", false, 2560, 2815, 255, 255, 3, "PV", "W"},
    {"PV", false, 2816, 3071, 255, 255, 3, "SR", "SV"},
    {"SR", false, 3072, 3583, 511, 511, 3, "ERR", "PV"},
}};

/// The numbers `first` .. `last`, zero-filled to `digits`.
std::vector<std::string> decimalTexts(int first, int last, std::size_t digits = 1) {
    std::vector<std::string> texts;
    texts.reserve(static_cast<std::size_t>(last - first) + 1);
    for (int number = first; number <= last; ++number) {
        texts.push_back(decimal(number, digits));
    }
    return texts;
}

} // namespace

std::span<const RegisterKind> registerKinds() { return kinds; }

const RegisterKind* kindOfWord(int word) {
    const auto* const found = std::ranges::find_if(
        kinds, [word](const RegisterKind& kind) { return word >= kind.base && word <= kind.last; });
    return found != kinds.end() ? found : nullptr;
}

const RegisterKind* findRegisterKind(std::string_view kind) {
    const auto* const found = std::ranges::find(kinds, kind, &RegisterKind::name);
    return found != kinds.end() ? found : nullptr;
}

int GetRegisterBase(std::string_view access, std::string_view kind) {
    const RegisterKind* const found = findRegisterKind(kind);
    const bool reachable = found != nullptr && (access == "W" || (access == "B" && found->bitAccess));
    return reachable ? found->base : 0;
}

SplitAddress SplitRegisterAddress(int address) {
    if (address < 0) {
        return {"", 0};
    }
    const auto found = std::find_if(kinds.rbegin(), kinds.rend(),
                                    [address](const RegisterKind& kind) { return kind.base <= address; });
    // kept: an "SR" address comes back whole, not as a number within its block
    const int number = found->name == "SR" ? address : address - found->base;
    return {std::string(found->name), number};
}

int GetRegisterLastAddress(std::string_view kind) {
    const RegisterKind* const found = findRegisterKind(kind);
    return found != nullptr ? found->last : 0;
}

int GetRegisterMaxNumber(std::string_view kind) {
    const RegisterKind* const found = findRegisterKind(kind);
    return found != nullptr ? found->highestSimulated : 0;
}

std::string NextRegisterKind(std::string_view kind) {
    const RegisterKind* const found = findRegisterKind(kind);
    return found != nullptr ? std::string(found->next) : std::string();
}

std::string PrevRegisterKind(std::string_view kind) {
    const RegisterKind* const found = findRegisterKind(kind);
    return found != nullptr ? std::string(found->previous) : std::string();
}

std::vector<std::string> kindListTexts(Access access) {
    std::vector<std::string> texts;
    for (const RegisterKind& kind : kinds) {
        if (access == Access::Word || kind.bitAccess) {
            texts.emplace_back(kind.name);
        }
    }
    texts.emplace_back(); // kept: choosing the empty last entry leaves the page without a register
    return texts;
}

std::vector<std::string> numberListTexts(std::string_view kind) {
    const RegisterKind* const found = findRegisterKind(kind);
    return found != nullptr ? decimalTexts(0, found->highestListed, found->listWidth)
                            : std::vector<std::string>();
}

std::string registerNumberText(std::string_view kind, int number) {
    const RegisterKind* const found = findRegisterKind(kind);
    return decimal(number, found != nullptr ? found->listWidth : 1);
}

std::vector<std::string> bitListTexts() { return decimalTexts(0, 15); }

std::vector<std::string> countListTexts(int limit) { return decimalTexts(1, limit); }

int registerAddress(Access access, std::string_view kind, int number) {
    return toInteger16(GetRegisterBase(access == Access::Bit ? "B" : "W", kind) + number);
}

int registerAddress(Access access, std::string_view kind, std::string_view number) {
    const int typed = toInteger(number, "Register number");
    return advised([&] { return registerAddress(access, kind, typed); },
                   [number](const RuntimeError& /*error*/) {
                       return "Register number \"" + std::string(number) +
                              "\" is out of range. Choose one from the list.";
                   });
}

std::string wordAddressText(int word) { return hex(word, 4); }

std::string bitAddressText(int word, int bit) {
    // kept: only three digits of the word survive, so a word address above 0xFFF loses its top digit
    return hex(word, 3) + hex(bit);
}

} // namespace varda::core
