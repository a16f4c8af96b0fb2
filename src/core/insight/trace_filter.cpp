#include "core/insight/trace_filter.h"

#include "core/base/conversion.h"
#include "core/base/name_index.h"
#include "core/insight/trace_words.h"
#include "core/protocol/frame_text.h"

#include <algorithm>
#include <vector>

namespace varda::inline core {
namespace {

constexpr std::uint32_t highestStation = 255;

std::string inSmallLetters(std::string_view text) {
    std::string changed(text);
    std::ranges::transform(changed, changed.begin(), [](char character) {
        return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
    });
    return changed;
}

/// Addresses of bits, from the first one to behind the last one.
struct BitRange {
    int begin;
    int end;
};

BitRange bitsOf(const PointRun& run) {
    const int size = run.first.access == Access::Word ? bitsOfWord : 1;
    return {run.first.address * size, (run.first.address + run.count) * size};
}

bool speaksOf(const TraceLine& line, const Point& point) {
    const BitRange wanted = bitsOf({point, 1});
    return std::ranges::any_of(framesOf(line), [wanted](const DecodedFrame& frame) {
        return std::ranges::any_of(runsOf(frame), [wanted](const PointRun& run) {
            const BitRange bits = bitsOf(run);
            return bits.begin < wanted.end && wanted.begin < bits.end;
        });
    });
}

bool hasStation(const TraceLine& line, int station) {
    const auto isThere = [station](const Field* field) {
        return field != nullptr && field->number == station;
    };
    return std::ranges::any_of(framesOf(line), [&isThere](const DecodedFrame& frame) {
        return frame.kind.command != nullptr &&
               (isThere(frame.find(FieldRole::Destination)) || isThere(frame.find(FieldRole::Source)));
    });
}

bool holds(const Bytes& bytes, const Bytes& part) {
    return part.empty() || std::search(bytes.begin(), bytes.end(), part.begin(), part.end()) != bytes.end();
}

std::vector<std::string> wordsOf(std::string_view typed) {
    std::vector<std::string> words;
    while (!typed.empty()) {
        const auto end = std::min(typed.find(' '), typed.size());
        if (end > 0) {
            words.emplace_back(typed.substr(0, end));
        }
        typed.remove_prefix(std::min(end + 1, typed.size()));
    }
    return words;
}

std::optional<int> readStation(std::string_view text) {
    const auto number = readDigits(text);
    return number && *number <= highestStation ? std::optional(static_cast<int>(*number)) : std::nullopt;
}

/// Takes the words of a filter one after another.
class FilterReader {
public:
    explicit FilterReader(std::string_view typed) : words_(wordsOf(typed)) {}

    TraceFilter read() {
        while (next_ < words_.size()) {
            if (!takeDirection() && !takeFlag() && !takeStation() && !takeBytes() && !takePoint()) {
                filter_.kind += (filter_.kind.empty() ? "" : " ") + inSmallLetters(words_[next_++]);
            }
        }
        return filter_;
    }

private:
    bool isWord(std::string_view word) const { return equalNames(words_[next_], word); }

    template <typename Take>
    bool take(std::string_view word, Take&& take) {
        const bool is = isWord(word);
        if (is) {
            ++next_;
            take();
        }
        return is;
    }

    bool takeDirection() {
        return take("sent", [this] { filter_.direction = Direction::Sent; }) ||
               take("received", [this] { filter_.direction = Direction::Received; }) ||
               take("event", [this] { filter_.direction = Direction::Event; });
    }

    bool takeFlag() {
        return take("wrong", [this] { filter_.onlyWrong = true; }) ||
               take("marked", [this] { filter_.onlyMarked = true; });
    }

    bool takeStation() {
        return take("station", [this] {
            if (next_ < words_.size()) {
                filter_.station = readStation(words_[next_]);
                next_ += filter_.station ? 1 : 0;
            }
        });
    }

    bool takeBytes() {
        return take("hex", [this] {
            for (; next_ < words_.size(); ++next_) {
                const std::string& word = words_[next_];
                const Bytes bytes = bytesOfText(word);
                if (bytes.empty() || bytes.size() != (word.size() + 1) / 2) {
                    return;
                }
                filter_.bytes.insert(filter_.bytes.end(), bytes.begin(), bytes.end());
            }
        });
    }

    /// One word, or the kind's and the number's.
    bool takePoint() {
        for (const std::size_t count : {2U, 1U}) {
            if (next_ + count > words_.size()) {
                continue;
            }
            const std::string text = count == 2 ? words_[next_] + ' ' + words_[next_ + 1] : words_[next_];
            if (const auto point = readPoint(text)) {
                filter_.point = point;
                next_ += count;
                return true;
            }
        }
        return false;
    }

    std::vector<std::string> words_;
    std::size_t next_ = 0;
    TraceFilter filter_;
};

} // namespace

/// What costs least is asked first.
bool passes(const TraceFilter& filter, const Trace& trace, Trace::Number number) {
    const TraceLine* const line = trace.find(number);
    return line != nullptr && (!filter.direction || line->direction == *filter.direction) &&
           (!filter.onlyMarked || line->isMarked) && holds(line->bytes, filter.bytes) &&
           (!filter.onlyWrong || trace.isWrong(number)) &&
           (!filter.station || hasStation(*line, *filter.station)) &&
           (filter.kind.empty() || kindOfLine(*line).find(filter.kind) != std::string::npos) &&
           (!filter.point || speaksOf(*line, *filter.point));
}

TraceFilter readTraceFilter(std::string_view typed) { return FilterReader(typed).read(); }

} // namespace varda::core
