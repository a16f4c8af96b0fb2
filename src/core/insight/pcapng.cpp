#include "core/insight/pcapng.h"

#include <algorithm>

namespace varda::inline core {
namespace {

constexpr std::size_t longestComment = 4000;

enum class Block : std::uint32_t { Section = 0x0A0D0D0A, Interface = 1, Packet = 6 };
enum class Option : std::uint16_t { End = 0, Comment = 1, Flags = 2, Application = 4 };

/// Puts the numbers and texts of a block together, low byte first.
class Writer {
public:
    Writer& number(std::uint64_t value, std::size_t bytes) {
        for (std::size_t count = 0; count < bytes; ++count) {
            text_ += static_cast<char>(value >> (8 * count) & 0xFFU);
        }
        return *this;
    }
    Writer& number16(std::uint64_t value) { return number(value, 2); }
    Writer& number32(std::uint64_t value) { return number(value, 4); }

    /// Filled up to whole groups of four bytes.
    Writer& padded(const std::string& bytes) {
        text_ += bytes;
        text_.append((4 - bytes.size() % 4) % 4, '\0');
        return *this;
    }

    Writer& option(Option code, const std::string& value) {
        number16(static_cast<std::uint64_t>(code)).number16(value.size());
        return padded(value);
    }

    const std::string& text() const { return text_; }

private:
    std::string text_;
};

/// The length stands at both ends, so that a capture can be read backwards, too.
std::string block(Block type, const Writer& body) {
    constexpr std::size_t around = 12;
    const std::size_t length = body.text().size() + around;
    Writer whole;
    whole.number32(static_cast<std::uint64_t>(type)).number32(length);
    return whole.text() + body.text() + Writer().number32(length).text();
}

std::string cutText(const std::string& text) {
    std::size_t end = std::min(text.size(), longestComment);
    while (end < text.size() && end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U) {
        --end;
    }
    return text.substr(0, end);
}

} // namespace

std::string captureHeading() {
    constexpr std::uint64_t byteOrderMark = 0x1A2B3C4D;
    constexpr std::uint64_t unknownLength = UINT64_MAX;
    Writer section;
    section.number32(byteOrderMark).number16(1).number16(0).number(unknownLength, 8);
    section.option(Option::Application, "VR-Series PLC Test & Simulator").option(Option::End, "");
    Writer interface;
    interface.number16(linkTypeUser0).number16(0).number32(0); // of any length; its times are microseconds
    return block(Block::Section, section) + block(Block::Interface, interface);
}

std::string captured(const CapturedPacket& packet) {
    constexpr std::uint64_t inbound = 1;
    constexpr std::uint64_t outbound = 2;
    const auto time = static_cast<std::uint64_t>(
        std::chrono::duration_cast<std::chrono::microseconds>(packet.time.time_since_epoch()).count());
    Writer body;
    body.number32(0).number32(time >> 32U).number32(time);
    body.number32(packet.bytes.size()).number32(packet.size);
    body.padded({packet.bytes.begin(), packet.bytes.end()});
    if (!packet.comment.empty()) {
        body.option(Option::Comment, cutText(packet.comment));
    }
    body.option(Option::Flags, Writer().number32(packet.isSent ? outbound : inbound).text());
    body.option(Option::End, "");
    return block(Block::Packet, body);
}

} // namespace varda::core
