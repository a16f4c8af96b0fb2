#include "core/recordings/capture_reader.h"

#include "core/base/runtime_error.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <optional>
#include <vector>

namespace varda::inline core {
namespace {

namespace chrono = std::chrono;

constexpr std::uint32_t sectionBlock = 0x0A0D0D0A;
constexpr std::uint32_t interfaceBlock = 1;
constexpr std::uint32_t packetBlock = 6;
constexpr std::uint32_t byteOrderMark = 0x1A2B3C4D;

RuntimeError noCapture(const std::string& why) {
    return {run_time_error::typeMismatch, "This is no capture that can be read: " + why};
}

RuntimeError damaged(std::size_t place) {
    return noCapture("it is damaged at byte " + std::to_string(place) + '.');
}

/// Reads numbers, low byte first. What lies beyond the end is 0: who reads asks for the size before.
class View {
public:
    explicit View(std::string_view bytes) : bytes_(bytes) {}

    std::size_t size() const { return bytes_.size(); }
    std::uint64_t number(std::size_t place, std::size_t count) const {
        std::uint64_t value = 0;
        for (std::size_t index = count; index-- > 0;) {
            const std::size_t at = place + index;
            value = value << 8U | (at < bytes_.size() ? static_cast<std::uint8_t>(bytes_[at]) : 0U);
        }
        return value;
    }
    std::uint32_t number32(std::size_t place) const { return static_cast<std::uint32_t>(number(place, 4)); }
    std::string_view part(std::size_t place, std::size_t count) const {
        return place < bytes_.size() ? bytes_.substr(place, count) : std::string_view();
    }

private:
    std::string_view bytes_;
};

constexpr std::size_t padded(std::size_t size) { return (size + 3) / 4 * 4; }

/// The value of an option behind the fixed part of a block.
std::optional<View> findOption(View options, std::uint64_t wanted) {
    constexpr std::size_t heading = 4;
    for (std::size_t place = 0; place + heading <= options.size();) {
        const std::uint64_t code = options.number(place, 2);
        const auto length = static_cast<std::size_t>(options.number(place + 2, 2));
        if (code == 0) {
            break;
        }
        if (code == wanted) {
            return View(options.part(place + heading, length));
        }
        place += heading + padded(length);
    }
    return std::nullopt;
}

} // namespace

class CaptureReader::Blocks {
public:
    /// Takes every block that is whole. @return bytes of them
    std::size_t takeAll(std::string_view file) {
        std::size_t taken = 0;
        while (const std::size_t length = wholeBlock(file.substr(taken))) {
            const View block(file.substr(taken, length));
            takeBlock(block.number32(0), View(block.part(8, length - around)));
            taken += length;
            place_ += length;
        }
        return taken;
    }

    ReadCapture finish(std::string_view rest) {
        if (place_ == 0) { // nothing of it was whole
            requireBeginning(View(rest));
        }
        read_.isCut = !rest.empty();
        return std::move(read_);
    }

    std::size_t packets() const { return read_.recording.size(); }

private:
    static constexpr std::size_t around = 12; ///< bytes of a block beside its body

    /// The unit of an interface's times.
    class TimeUnit {
    public:
        /// @param resolution of the option if_tsresol
        explicit TimeUnit(std::uint64_t resolution) {
            constexpr std::uint64_t binary = 0x80;
            const std::uint64_t exponent = resolution % binary;
            const bool isBinary = resolution >= binary;
            const std::uint64_t most = isBinary ? 63 : 18; // powers of 2 and of 10 that still fit
            for (std::uint64_t step = 0; step < std::min(exponent, most); ++step) {
                perSecond_ *= isBinary ? 2 : 10;
            }
        }
        chrono::system_clock::time_point time(std::uint64_t stamp) const {
            constexpr std::uint64_t latest = 9'000'000'000; // seconds, as far as a clock of nanoseconds goes
            constexpr std::uint64_t microseconds = 1'000'000;
            const std::uint64_t seconds = std::min(stamp / perSecond_, latest);
            const double rest = static_cast<double>(stamp % perSecond_) / static_cast<double>(perSecond_);
            const auto micro =
                static_cast<std::int64_t>(rest * microseconds + 0.5); // NOLINT: rounded, not below 0
            return chrono::system_clock::time_point(chrono::duration_cast<chrono::system_clock::duration>(
                chrono::seconds(seconds) + chrono::microseconds(micro)));
        }

    private:
        std::uint64_t perSecond_ = 1;
    };

    static void requireBeginning(View file) {
        if (file.number32(0) != sectionBlock) {
            throw noCapture("it does not begin as a pcapng file does.");
        }
    }

    /// @return its length; 0 where it is not whole yet
    std::size_t wholeBlock(std::string_view bytes) const {
        const View rest(bytes);
        if (rest.size() < around) {
            return 0;
        }
        if (place_ == 0) {
            requireBeginning(rest);
        }
        if (rest.number32(0) == sectionBlock && rest.number32(8) != byteOrderMark) {
            throw noCapture("it was written by a computer of another byte order."); // its lengths, too
        }
        const std::size_t length = rest.number32(4);
        if (length > rest.size()) {
            return 0;
        }
        if (length < around || length % 4 != 0 || rest.number32(length - 4) != length) {
            throw damaged(place_);
        }
        return length;
    }

    void takeBlock(std::uint32_t type, View body) {
        if (type == sectionBlock) {
            units_.clear();
        } else if (type == interfaceBlock) {
            takeInterface(body);
        } else if (type == packetBlock) {
            takePacket(body);
        } // any other may be passed over
    }

    void takeInterface(View body) {
        constexpr std::size_t fixed = 8;
        constexpr std::uint64_t resolution = 9;
        constexpr std::uint64_t preset = 6; // microseconds
        const auto option = findOption(View(body.part(fixed, body.size())), resolution);
        units_.emplace_back(option ? option->number(0, 1) : preset);
    }

    void takePacket(View body) {
        constexpr std::size_t fixed = 20;
        constexpr std::uint64_t flags = 2;
        constexpr std::uint64_t outbound = 2;
        const std::size_t interface = body.number32(0);
        const std::size_t kept = body.number32(12);
        if (body.size() < fixed || kept > body.size() - fixed || interface >= units_.size()) {
            throw damaged(place_);
        }
        if (kept != body.number32(16)) {
            ++read_.incomplete;
            return;
        }
        const std::uint64_t stamp = std::uint64_t{body.number32(4)} << 32U | body.number32(8);
        const auto option = findOption(View(body.part(fixed + padded(kept), body.size())), flags);
        const std::string_view bytes = body.part(fixed, kept);
        read_.recording.push_back({units_[interface].time(stamp),
                                   option && option->number(0, 4) % 4 == outbound,
                                   Bytes(bytes.begin(), bytes.end())});
    }

    std::size_t place_ = 0;       ///< of the next block
    std::vector<TimeUnit> units_; ///< of the interfaces of this section
    ReadCapture read_;
};

CaptureReader::CaptureReader() : blocks_(std::make_unique<Blocks>()) {}

CaptureReader::~CaptureReader() = default;

void CaptureReader::take(std::string_view piece) {
    if (rest_.empty()) {
        rest_ = piece.substr(blocks_->takeAll(piece));
    } else {
        rest_ += piece;
        rest_.erase(0, blocks_->takeAll(rest_));
    }
}

std::size_t CaptureReader::packets() const { return blocks_->packets(); }

ReadCapture CaptureReader::finish() {
    ReadCapture read = blocks_->finish(rest_);
    if (!std::ranges::is_sorted(read.recording, {}, &RecordedBurst::time)) {
        std::ranges::stable_sort(read.recording, {}, &RecordedBurst::time);
    }
    return read;
}

ReadCapture readCapture(std::string_view file) {
    CaptureReader reader;
    reader.take(file);
    return reader.finish();
}

} // namespace varda::core
