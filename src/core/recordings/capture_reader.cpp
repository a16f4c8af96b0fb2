#include "core/recordings/capture_reader.h"

#include "core/base/runtime_error.h"
#include "core/files/atomic_file.h"

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
constexpr std::size_t largestFile = std::size_t{256} << 20U;

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

class Reader {
public:
    explicit Reader(std::string_view file) : file_(file) {}

    ReadCapture read() {
        constexpr std::size_t around = 12;
        if (View(file_).number32(0) != sectionBlock) {
            throw noCapture("it does not begin as a pcapng file does.");
        }
        for (std::size_t place = 0; place < file_.size();) {
            const View rest(std::string_view(file_).substr(place));
            const std::size_t length = rest.number32(4);
            if (rest.size() < around || length > rest.size()) {
                read_.isCut = true;
                break;
            }
            if (length < around || length % 4 != 0 || rest.number32(length - 4) != length) {
                throw damaged(place);
            }
            takeBlock(rest.number32(0), View(rest.part(8, length - around)), place);
            place += length;
        }
        return std::move(read_);
    }

private:
    void takeBlock(std::uint32_t type, View body, std::size_t place) {
        if (type == sectionBlock) {
            if (body.number32(0) != byteOrderMark) {
                throw noCapture("it was written by a computer of another byte order.");
            }
            units_.clear();
        } else if (type == interfaceBlock) {
            takeInterface(body);
        } else if (type == packetBlock) {
            takePacket(body, place);
        } // any other may be passed over
    }

    void takeInterface(View body) {
        constexpr std::size_t fixed = 8;
        constexpr std::uint64_t resolution = 9;
        constexpr std::uint64_t preset = 6; // microseconds
        const auto option = findOption(View(body.part(fixed, body.size())), resolution);
        units_.emplace_back(option ? option->number(0, 1) : preset);
    }

    void takePacket(View body, std::size_t place) {
        constexpr std::size_t fixed = 20;
        constexpr std::uint64_t flags = 2;
        constexpr std::uint64_t outbound = 2;
        const std::size_t interface = body.number32(0);
        const std::size_t kept = body.number32(12);
        if (body.size() < fixed || kept > body.size() - fixed || interface >= units_.size()) {
            throw damaged(place);
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

    std::string_view file_;
    std::vector<TimeUnit> units_; ///< of the interfaces of this section
    ReadCapture read_;
};

} // namespace

ReadCapture readCapture(std::string_view file) {
    ReadCapture read = Reader(file).read();
    std::ranges::stable_sort(read.recording, {}, &RecordedBurst::time);
    return read;
}

ReadCapture loadCapture(const std::string& path) {
    const FileText file = readRegularFile(path, largestFile);
    if (file.problem) {
        throw RuntimeError(*file.problem);
    }
    if (file.text.empty()) {
        throw fileError(path, "is empty, or not there");
    }
    try {
        return readCapture(file.text);
    } catch (const RuntimeError& error) {
        throw RuntimeError(run_time_error::fileAccessError,
                           '"' + path + "\" cannot be used. " + error.what());
    }
}

} // namespace varda::core
