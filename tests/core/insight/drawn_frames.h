#pragma once

#include "core/insight/coverage.h"
#include "core/insight/decoder.h"
#include "core/insight/field_words.h"
#include "core/protocol/mixed_requests.h"
#include "core/protocol/single_requests.h"
#include "core/virtual/controller.h"

#include "core/protocol/random_draws.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

/// Requests that the program's own encoders make of drawn meanings, and the embedded controller's answers.
namespace varda::test {

/// What a frame says.
struct Meaning {
    int destination = 0;
    int source = 0;
    FrameKind kind;
    std::vector<Point> points; ///< that it reads, writes or brings
    std::vector<int> values;   ///< of them, in a write and in the answer to a read

    bool operator==(const Meaning&) const = default;
};

struct DrawnExchange {
    Meaning asked;
    Bytes request;
    Meaning answered;
    Bytes answer;
};

inline Meaning meaningOf(const DecodedFrame& frame) {
    Meaning meaning{frame.find(FieldRole::Destination)->number,
                    frame.find(FieldRole::Source)->number,
                    frame.kind,
                    pointsOf(runsOf(frame)),
                    {}};
    for (const Field& field : frame.fields) {
        if (field.role == FieldRole::Value) {
            meaning.values.push_back(field.number);
        }
    }
    return meaning;
}

inline void expectCovered(const DecodedFrame& frame, std::size_t size) {
    ASSERT_EQ(flawOfCoverage({frame}, size), "");
}

class FrameDraws {
public:
    static constexpr int kinds = 6;

    explicit FrameDraws(unsigned seed) : draws_(seed) {
        for (int word = 0; word < Controller::wordCount; ++word) {
            controller_.setWord(word, static_cast<std::uint16_t>(draws_.below(65536)));
        }
    }

    Draws& draws() { return draws_; }

    /// @param kind 0 .. 5, in the order of the commands
    DrawnExchange exchange(int kind) {
        const Command& command = commands()[static_cast<std::size_t>(kind)];
        DrawnExchange drawn;
        drawn.asked = {draws_.below(256), draws_.below(256), {&command, false}, {}, {}};
        drawn.request = command.access ? single(command, drawn.asked) : mixed(command, drawn.asked);
        drawn.answered = {drawn.asked.source, drawn.asked.destination, {&command, true}, {}, {}};
        if (!command.writes) {
            drawn.answered.points = drawn.asked.points;
            for (const Point& point : drawn.asked.points) {
                drawn.answered.values.push_back(valueOf(point));
            }
        }
        drawn.answer = controller_.answer(drawn.request).value();
        return drawn;
    }

private:
    static StationTexts stations(const Meaning& meaning) {
        return {std::to_string(meaning.destination), std::to_string(meaning.source)};
    }

    int valueOf(const Point& point) const {
        if (point.access == Access::Word) {
            return controller_.word(point.address);
        }
        return (controller_.word(point.address / 16) >> (point.address % 16) & 1) != 0 ? 0xFF : 0;
    }

    int drawValue(Access access) {
        return access == Access::Word ? draws_.below(65536) : draws_.oneIn(2) ? 0xFF : 0;
    }

    /// A read of nothing is none, and a page writes one value at least.
    Bytes single(const Command& command, Meaning& meaning) {
        const Access access = *command.access;
        const int most = command.writes ? writeLimit(access) : access == Access::Bit ? 256 : 128;
        const int count = 1 + draws_.below(draws_.oneIn(3) ? most : 8);
        const int word = draws_.below(Controller::wordCount - 256);
        const int bit = draws_.below(16);
        const int first = access == Access::Word ? word : word * 16 + bit;
        for (int step = 0; step < count; ++step) {
            meaning.points.push_back({access, first + step});
            if (command.writes) {
                meaning.values.push_back(drawValue(access));
            }
        }
        FrameImages images;
        FrameImage& image = command.writes ? images.write : images.read;
        const auto texts = stations(meaning);
        setStation(image, offset::destination, texts.destination);
        setStation(image, offset::source, texts.source);
        image.setLowHigh(offset::address,
                         access == Access::Word ? wordAddressText(word) : bitAddressText(word, bit));
        return command.writes ? write(images, access, meaning.values) : read(images, access, count);
    }

    static Bytes read(FrameImages& images, Access access, int count) {
        setReadCount(images, count);
        MakeReadFormat(images, access);
        return readWire(images);
    }

    static Bytes write(FrameImages& images, Access access, const std::vector<int>& values) {
        const auto count = static_cast<int>(values.size());
        setWriteCount(images, access, count);
        for (std::size_t index = 0; index < values.size(); ++index) {
            if (access == Access::Bit) {
                setWriteBit(images, index, values[index] != 0);
            } else {
                setWriteWord(images, index, values[index]);
            }
        }
        MakeWriteFormat(images, access, count);
        return writeWire(images);
    }

    Bytes mixed(const Command& command, Meaning& meaning) {
        std::vector<std::string> lines;
        const int items = 1 + draws_.below(draws_.oneIn(3) ? 60 : 6);
        for (int item = 0; item < items; ++item) {
            lines.push_back(mixedLine(command, meaning));
        }
        FrameImages images;
        if (command.writes) {
            MakeMWDataFormat(images, lines);
            MakeMWriteFormat(images, stations(meaning), lines);
        } else {
            MakeMRDataFormat(images, lines);
            MakeMReadFormat(images, stations(meaning), lines);
        }
        return mixedWire(images, command.code);
    }

    std::string mixedLine(const Command& command, Meaning& meaning) {
        const Access access = draws_.oneIn(2) ? Access::Word : Access::Bit;
        const std::string kind = draws_.pick({"R", "L", "M", "K", "F"});
        const int number = draws_.below(10);
        const int bit = draws_.below(14);
        const int count = command.writes ? 1 : 1 + draws_.below(2);
        const int word = GetRegisterBase("W", kind) + number;
        for (int step = 0; step < count; ++step) {
            meaning.points.push_back({access, access == Access::Word ? word + step : word * 16 + bit + step});
        }
        std::string value = std::to_string(count);
        if (command.writes) {
            meaning.values.push_back(drawValue(access));
            value = access == Access::Word ? printed("%04X", static_cast<unsigned>(meaning.values.back()))
                    : meaning.values.back() == 0 ? "OFF"
                                                 : "ON";
        }
        return access == Access::Word
                   ? "WORD\t" + kind + std::to_string(number) + "\t" + value
                   : "BIT\t" + kind + std::to_string(number) + "." + std::to_string(bit) + "\t" + value;
    }

    Draws draws_;
    Controller controller_;
};

} // namespace varda::test
