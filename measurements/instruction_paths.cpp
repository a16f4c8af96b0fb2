#include "core/files/profile_file.h"
#include "core/insight/decoder.h"
#include "core/link/serial_link.h"
#include "core/pairs/packet_file.h"
#include "core/pairs/packet_table.h"
#include "core/protocol/crc16.h"
#include "core/protocol/frame_text.h"
#include "core/protocol/hex_text.h"
#include "core/protocol/single_requests.h"
#include "core/virtual/virtual_line.h"
#include "support/manual_clock.h"
#include "support/prepared_reads.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string_view>
#include <utility>

/// Runs one of the core's hot paths, for scripts/check-instructions to count its instructions. Without an
/// argument it lists the names of the paths.
namespace {

using namespace varda;

using Path = std::function<std::size_t()>; ///< what a call returns keeps the compiler from leaving it out

constexpr unsigned seed = 20261123;

/// A write of as many words as a frame takes, from its values to what is shown and sent.
Path longestFrame() {
    return [owned = std::make_shared<FrameImages>()] {
        FrameImages& images = *owned;
        setWriteCount(images, Access::Word, writeLimit(Access::Word));
        for (std::size_t word = 0; word < static_cast<std::size_t>(writeLimit(Access::Word)); ++word) {
            setWriteWord(images, word, static_cast<int>(word));
        }
        MakeWriteFormat(images, Access::Word, writeLimit(Access::Word));
        return DisplayWString(images).size() + writeWire(images).size();
    };
}

Path readFrame() {
    return [owned = std::make_shared<FrameImages>()] {
        FrameImages& images = *owned;
        setReadCount(images, 10);
        MakeReadFormat(images, Access::Word);
        return DisplayRString(images).size() + readWire(images).size();
    };
}

Bytes longBytes() {
    constexpr std::size_t longest = 519;
    Bytes bytes;
    for (std::size_t index = 0; index < longest; ++index) {
        bytes.push_back(static_cast<std::uint8_t>(index));
    }
    return bytes;
}

Path check() {
    return [bytes = longBytes()] { return std::size_t{crc16(bytes)}; };
}

Path texts() {
    return [bytes = longBytes()] { return bytesOfText(hexGroups(bytes)).size(); };
}

Bytes withCheck(Bytes frame) {
    const int check = crc16(frame);
    frame.push_back(static_cast<std::uint8_t>(check & 0xFF));
    frame.push_back(static_cast<std::uint8_t>(check >> 8));
    return frame;
}

struct Read {
    Bytes request = withCheck({0x05, 0x00, 0x23, 0x03, 0x00, 0x02, 0x40});
    Bytes answer = withCheck([] {
        Bytes frame = {0x00, 0x05, 0xA3, 0x80};
        frame.resize(frame.size() + frame.back(), 0x5A);
        return frame;
    }());
};

Path parsing() {
    return [read = Read()] { return std::size_t{parse(read.answer).has_value()}; };
}

Path decoding() {
    return [read = Read()] { return std::size_t{decode(read.answer, read.request).isSound()}; };
}

std::shared_ptr<PacketTable> filledTable() {
    std::vector<std::string> requests;
    std::vector<std::string> answers;
    for (const auto& read : test::preparedReads(2000, seed)) {
        requests.push_back(test::frameText(read.request));
        answers.push_back(test::frameText(read.answer));
    }
    auto table = std::make_shared<PacketTable>();
    table->replace(std::move(requests), std::move(answers));
    return table;
}

Path lookingUp() {
    return [table = filledTable()] {
        std::size_t sum = 0;
        for (const std::string& request : table->requests()) {
            sum += table->find(request).value_or(0);
        }
        return sum;
    };
}

Path loading() {
    ProfileFile file;
    storePackets(*filledTable(), file);
    return [text = file.text()] {
        PacketTable table;
        loadPackets(table, ProfileFile::parse(text));
        return table.answers().size();
    };
}

Path saving() {
    return [table = filledTable()] {
        ProfileFile file;
        storePackets(*table, file);
        return file.text().size();
    };
}

/// A link to the embedded controller, which nobody looks at.
class Transaction : public LinkObserver {
public:
    Transaction() {
        comm_.setEventHandler([this](CommEvent event, const std::string&) { link_.commPLC_OnComm(event); });
        link_.enterMode(Mode::WordRead);
        link_.observe(*this);
        comm_.open();
    }

    void told(const Exchange& exchange) override {
        answered_ += exchange.outcome == Outcome::Answered ? 1 : 0;
    }

    std::size_t run() {
        constexpr int readAndSettled = 200;
        link_.startRequest();
        link_.SendRequest(request_, 8);
        clock_.advance(readAndSettled);
        return std::exchange(answered_, 0);
    }

private:
    Bytes request_ = bytesOfText("01 00 23 03 01 02 01 5F 23 ");
    test::ManualClock clock_;
    Controller controller_;
    MSComm comm_{[this](const std::string&) { return std::make_unique<VirtualLine>(controller_, clock_); }};
    SerialLink link_{comm_, clock_};
    std::size_t answered_ = 0;
};

Path transaction() {
    return [link = std::make_shared<Transaction>()] { return link->run(); };
}

struct NamedPath {
    std::string_view name;
    Path (*prepared)();
};

constexpr auto paths = std::to_array<NamedPath>({
    {"frame-of-a-read", readFrame},
    {"longest-frame", longestFrame},
    {"frame-check", check},
    {"texts-of-a-frame", texts},
    {"parsing", parsing},
    {"decoding", decoding},
    {"looking-up-2000-requests", lookingUp},
    {"loading-2000-pairs", loading},
    {"saving-2000-pairs", saving},
    {"transaction-over-VIRTUAL", transaction},
});

std::size_t result = 0;

} // namespace

/// What is counted, by this name.
extern "C" [[gnu::noinline]] void countedPath(const void* path) {
    result += (*static_cast<const Path*>(path))();
}

namespace {

int run(std::string_view name) {
    const auto* const found = std::ranges::find(paths, name, &NamedPath::name);
    if (found == std::end(paths)) {
        throw std::runtime_error("There is no path of that name.");
    }
    const Path path = found->prepared();
    if (path() == 0) { // what is done once for all is not the path's
        throw std::runtime_error("The path does not do what it is for.");
    }
    countedPath(&path);
    return 0;
}

} // namespace

int main(int argc, char** argv) try {
    if (argc > 1) {
        return run(argv[1]);
    }
    for (const NamedPath& path : paths) {
        std::printf("%s\n", path.name.data());
    }
    return 0;
} catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
}
