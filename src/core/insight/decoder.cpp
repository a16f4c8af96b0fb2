#include "core/insight/decoder.h"

#include "core/protocol/crc16.h"
#include "core/protocol/mixed_requests.h"

#include <algorithm>
#include <array>

namespace varda::inline core {
namespace {

using Octets = std::span<const std::uint8_t>;

constexpr int wordMarkInAddress = wordMark << 8;
constexpr std::size_t mostInLength = 255;  ///< that LEN can say
constexpr std::size_t longestAnswer = 512; ///< body bytes: 256 words

/// A point of a mixed request, which says in its address what it is.
Point mixedPoint(int address) {
    const bool isWord = (address & wordMarkInAddress) != 0;
    return isWord ? Point{Access::Word, address & ~wordMarkInAddress} : Point{Access::Bit, address};
}

std::size_t sizeOfValues(const std::vector<PointRun>& runs) {
    std::size_t size = 0;
    for (const PointRun& run : runs) {
        size += static_cast<std::size_t>(valueSize(run.first.access) * run.count);
    }
    return size;
}

/// One frame while it is taken apart.
class Decoding {
public:
    Decoding(Octets bytes, Octets request) : bytes_(bytes) {
        frame_.kind = kindOf(bytes);
        if (!frame_.kind.isRequest() && !request.empty()) {
            lookAtRequest(decode(request));
        }
        if (frame_.kind.command != nullptr) {
            frame_.bodyWanted = bodyWanted();
        }
    }

    DecodedFrame take() {
        frame_.bodyLength = bytes_.size() > offset::length ? findBodyLength() : 0;
        header();
        body();
        tail();
        judge();
        return std::move(frame_);
    }

private:
    // What the request calls for

    void lookAtRequest(const DecodedFrame& request) {
        if (!request.kind.isRequest()) {
            return;
        }
        if (frame_.kind.command == nullptr && isAnswerOfAnotherCode(request)) {
            frame_.kind = {request.kind.command, true};
        }
        if (frame_.kind.command == request.kind.command && !request.kind.command->writes) {
            asked_ = runsOf(request);
            frame_.answersRequest = !asked_.empty();
        }
    }

    /// Nothing lays down what code the answer to a mixed request has: its length alone tells it.
    bool isAnswerOfAnotherCode(const DecodedFrame& request) const {
        const Command& asked = *request.kind.command;
        if (asked.access || bytes_.size() <= offset::length) {
            return false;
        }
        const std::size_t size =
            asked.writes ? frame_size::acknowledgementBody : sizeOfValues(runsOf(request));
        return bytes_[offset::length] == size && bytes_.size() == size + frame_size::envelope;
    }

    std::optional<std::size_t> bodyWanted() const {
        const Command& command = *frame_.kind.command;
        if (frame_.kind.isAnswer) {
            return command.writes          ? std::optional(frame_size::acknowledgementBody)
                   : frame_.answersRequest ? std::optional(sizeOfValues(asked_))
                                           : std::nullopt;
        }
        return command.access && !command.writes ? std::optional(frame_size::readBody) : std::nullopt;
    }

    // Where the frame ends

    std::size_t given() const { return bytes_[offset::length]; }

    /// Nothing but the low byte of a longer body's length fits into LEN.
    bool isLowByteOf(std::size_t length) const { return (length & mostInLength) == given(); }

    bool isChecked(std::size_t bodyLength) const {
        const std::size_t checked = frame_size::header + bodyLength;
        return checked + frame_size::check <= bytes_.size() &&
               crc16(bytes_.first(checked)) == lowHigh(bytes_, checked);
    }

    std::size_t allThereIs() const {
        return std::max(bytes_.size(), frame_size::envelope) - frame_size::envelope;
    }

    bool mayBeLong() const {
        return frame_.kind.isAnswer && frame_.kind.command->access && !frame_.kind.command->writes;
    }

    std::size_t findBodyLength() const {
        const std::size_t asked = frame_.bodyWanted.value_or(given());
        const std::array candidates = {isLowByteOf(asked) ? asked : given(), given(), given() + 256,
                                       longestAnswer, allThereIs()};
        const auto* const found = std::ranges::find_if(candidates, [this](std::size_t length) {
            const bool fits = length <= mostInLength || (mayBeLong() && isLowByteOf(length));
            return fits && isChecked(length);
        });
        return found != candidates.end() ? *found : guessedBodyLength();
    }

    /// Of a frame whose check is right nowhere.
    std::size_t guessedBodyLength() const {
        const auto& wanted = frame_.bodyWanted;
        if (wanted && (allThereIs() == *wanted || isLowByteOf(*wanted))) {
            return *wanted;
        }
        const bool isLong = mayBeLong() && allThereIs() <= longestAnswer && isLowByteOf(allThereIs());
        return isLong ? allThereIs() : given();
    }

    // Fields

    std::size_t bodyEnd() const { return frame_size::header + frame_.bodyLength; }

    /// Adds what is there of a field; fields of the body end with it.
    Field* add(FieldRole role, std::size_t place, std::size_t whole, std::size_t limit) {
        const std::size_t end = std::min({place + whole, limit, bytes_.size()});
        if (end <= place) {
            return nullptr;
        }
        Field field;
        field.role = role;
        field.place = place;
        field.length = end - place;
        field.whole = whole;
        if (whole <= 2) {
            field.number = field.length == 2 ? lowHigh(bytes_, place) : bytes_[place];
        }
        frame_.fields.push_back(field);
        return &frame_.fields.back();
    }

    Field* addToBody(FieldRole role, std::size_t whole) {
        Field* const added = add(role, next_, whole, bodyEnd());
        isUneven_ = isUneven_ || (next_ < bodyEnd() && next_ + whole > bodyEnd());
        next_ += whole;
        return added;
    }

    void header() {
        constexpr std::array roles = {FieldRole::Destination, FieldRole::Source, FieldRole::Command,
                                      FieldRole::Length};
        for (std::size_t place = 0; place < roles.size(); ++place) {
            add(roles.at(place), place, 1, frame_size::header);
        }
    }

    void body() {
        next_ = offset::body;
        if (const Command* const command = frame_.kind.command) {
            frame_.kind.isAnswer ? answerBody(*command) : requestBody(*command);
        }
        rest();
    }

    /// What of the body belongs to no field.
    void rest() {
        if (next_ < bodyEnd()) {
            addBytes(FieldRole::Body, bodyEnd() - next_, bodyEnd());
        }
    }

    void addBytes(FieldRole role, std::size_t whole, std::size_t limit) {
        if (Field* const field = add(role, next_, whole, limit)) {
            field->number = 0;
        }
    }

    bool hasBody() const { return next_ < bodyEnd() && next_ < bytes_.size(); }

    void value(const std::optional<Point>& point, Access access) {
        if (Field* const field = addToBody(FieldRole::Value, static_cast<std::size_t>(valueSize(access)))) {
            field->access = access;
            field->point = point;
            field->index = values_++;
        }
    }

    Point address(std::optional<Access> access) {
        Field* const field = addToBody(FieldRole::Address, frame_size::address);
        const int number = field != nullptr && !field->isCut() ? field->number : 0;
        const Point point = access ? Point{*access, number} : mixedPoint(number);
        if (field != nullptr && !field->isCut()) {
            field->access = point.access;
            field->point = point;
        }
        return point;
    }

    void requestBody(const Command& command) {
        if (!command.access) {
            mixedBody(command.writes);
            return;
        }
        Point point = address(command.access);
        if (!command.writes) {
            if (Field* const count = addToBody(FieldRole::Count, 1)) {
                count->access = command.access;
            }
            return;
        }
        for (; hasBody(); ++point.address) {
            value(point, point.access);
        }
    }

    void mixedBody(bool writes) {
        while (hasBody()) {
            const Point point = address({});
            const bool isWhole = !frame_.fields.back().isCut();
            if (writes && isWhole) {
                value(point, point.access);
            }
        }
    }

    void answerBody(const Command& command) {
        if (command.writes) {
            addToBody(FieldRole::Acknowledgement, frame_size::acknowledgementBody);
        } else if (frame_.answersRequest) {
            askedValues();
        } else if (command.access) {
            while (hasBody()) {
                value({}, *command.access);
            }
        }
    }

    /// The values stand in the order of the request's points.
    void askedValues() {
        for (const PointRun& run : asked_) {
            for (int step = 0; step < run.count && hasBody(); ++step) {
                value(Point{run.first.access, run.first.address + step}, run.first.access);
            }
        }
    }

    void tail() {
        add(FieldRole::Check, bodyEnd(), frame_size::check, bytes_.size());
        frame_.end = std::min(bodyEnd() + frame_size::check, bytes_.size());
        next_ = frame_.end;
        if (bytes_.size() > next_) {
            addBytes(FieldRole::Behind, bytes_.size() - next_, bytes_.size());
        }
    }

    // Faults

    void note(Fault fault, bool isThere) {
        if (isThere) {
            frame_.faults.push_back(fault);
        }
    }

    void judge() {
        const bool hasLength = bytes_.size() > offset::length;
        const bool isCut = !hasLength || bytes_.size() < bodyEnd() + frame_size::check;
        if (isCut) {
            frame_.missing = bodyEnd() + frame_size::check - bytes_.size();
        } else {
            frame_.checkRight = crc16(bytes_.first(bodyEnd()));
        }
        note(Fault::Cut, isCut);
        note(Fault::WrongLength, hasLength && !isLowByteOf(frame_.bodyLength));
        note(Fault::WrongBody, hasLength && isWrongBody());
        note(Fault::WrongCheck, !isCut && lowHigh(bytes_, bodyEnd()) != frame_.checkRight);
        note(Fault::UnknownCommand, bytes_.size() > offset::command && frame_.kind.command == nullptr);
        note(Fault::MoreBytes, behind() > (mayBeFollowed() ? 1U : 0U));
    }

    std::size_t behind() const { return bytes_.size() - frame_.end; }
    bool mayBeFollowed() const { return frame_.kind.isRequest() && !frame_.kind.command->access; }

    bool isWrongBody() const {
        const bool lacksAddress =
            frame_.kind.isRequest() && frame_.kind.command->access && frame_.bodyLength < frame_size::address;
        return isUneven_ || lacksAddress ||
               frame_.bodyLength != frame_.bodyWanted.value_or(frame_.bodyLength);
    }

    Octets bytes_;
    DecodedFrame frame_;
    std::vector<PointRun> asked_; ///< by the request
    std::size_t next_ = 0;        ///< place of the next field of the body
    std::size_t values_ = 0;
    bool isUneven_ = false; ///< the body ends within a field
};

} // namespace

DecodedFrame decode(std::span<const std::uint8_t> bytes, std::span<const std::uint8_t> request) {
    return Decoding(bytes, request).take();
}

} // namespace varda::core
