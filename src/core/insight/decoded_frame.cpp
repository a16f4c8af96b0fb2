#include "core/insight/decoder.h"

#include <algorithm>

namespace varda::inline core {
namespace {

void append(std::vector<PointRun>& runs, const Point& point) {
    if (!runs.empty()) {
        PointRun& last = runs.back();
        if (last.first.access == point.access && last.first.address + last.count == point.address) {
            ++last.count;
            return;
        }
    }
    runs.push_back({point, 1});
}

std::vector<PointRun> runOfRead(const DecodedFrame& frame) {
    const Field* const address = frame.find(FieldRole::Address);
    const Field* const count = frame.find(FieldRole::Count);
    if (address == nullptr || !address->point || count == nullptr) {
        return {};
    }
    return {{*address->point, countOfByte(count->number)}};
}

} // namespace

FrameKind kindOfCode(std::uint8_t code) {
    if (const Command* const asked = findCommand(code)) {
        return {asked, false};
    }
    const bool isMarked = (code & answerMark) != 0;
    const Command* const answered =
        isMarked ? findCommand(code & static_cast<std::uint8_t>(~answerMark)) : nullptr;
    return {answered, answered != nullptr};
}

FrameKind kindOf(std::span<const std::uint8_t> frame) {
    return frame.size() > offset::command ? kindOfCode(frame[offset::command]) : FrameKind{};
}

bool DecodedFrame::has(Fault fault) const { return std::ranges::find(faults, fault) != faults.end(); }

const Field* DecodedFrame::fieldAt(std::size_t place) const {
    const auto found = std::ranges::find_if(
        fields, [place](const Field& field) { return place - field.place < field.length; });
    return found != fields.end() ? &*found : nullptr;
}

const Field* DecodedFrame::find(FieldRole role) const {
    const auto found = std::ranges::find(fields, role, &Field::role);
    return found != fields.end() ? &*found : nullptr;
}

std::vector<PointRun> runsOf(const DecodedFrame& frame) {
    if (frame.kind.isRequest() && frame.kind.command->access && !frame.kind.command->writes) {
        return runOfRead(frame);
    }
    const bool isMixedRequest = frame.kind.isRequest() && !frame.kind.command->access;
    const FieldRole role = isMixedRequest ? FieldRole::Address : FieldRole::Value;
    std::vector<PointRun> runs;
    for (const Field& field : frame.fields) {
        if (field.role == role && field.point) {
            append(runs, *field.point);
        }
    }
    return runs;
}

std::vector<Point> pointsOf(const std::vector<PointRun>& runs) {
    std::vector<Point> points;
    for (const PointRun& run : runs) {
        for (int step = 0; step < run.count; ++step) {
            points.push_back({run.first.access, run.first.address + step});
        }
    }
    return points;
}

} // namespace varda::core
