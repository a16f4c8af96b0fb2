#include "core/insight/field_words.h"

#include "core/protocol/hex_text.h"

namespace varda::inline core {
namespace {

constexpr std::size_t byteDigits = 2;
constexpr std::size_t wordDigits = 4;

std::string inBothBases(int value, std::size_t digits) {
    return hexNumber(value, digits) + " = " + std::to_string(value);
}

std::string firstByte(const Field& field) { return "its first byte, " + hexNumber(field.number, byteDigits); }

std::string countInWords(const Field& field) {
    const int count = countOfByte(field.number);
    return hexNumber(field.number, byteDigits) + ": " +
           counted(static_cast<std::size_t>(count), field.access == Access::Bit ? "bit" : "word");
}

std::string addressInWords(const Field& field, const RegisterNames& names) {
    return field.point ? hexNumber(field.number, wordDigits) + ": " + names.describe(*field.point)
                       : firstByte(field);
}

std::string valueInWords(const Field& field) {
    if (field.access == Access::Bit) {
        return bitValue(field.number);
    }
    return field.isCut() ? firstByte(field) : inBothBases(field.number, wordDigits);
}

std::string checkInWords(const DecodedFrame& frame, const Field& field) {
    if (field.isCut()) {
        return firstByte(field);
    }
    const std::string shown = hexNumber(field.number, wordDigits);
    return frame.has(Fault::WrongCheck)
               ? shown + "; of the bytes before it, it is " + hexNumber(frame.checkRight, wordDigits)
               : shown + ", right";
}

std::string commandInWords(const DecodedFrame& frame, const Field& field) {
    return hexNumber(field.number, byteDigits) + ": " +
           (frame.kind.command != nullptr ? kindInWords(frame.kind) : "no command of this protocol");
}

std::string unnamed(const Field& field) {
    return (field.access == Access::Bit ? "Bit +" : "Word +") + std::to_string(field.index);
}

/// What stands between a field's name and its value.
std::string separatorOf(FieldRole role) {
    switch (role) {
    case FieldRole::Value:
        return " = ";
    case FieldRole::Command:
    case FieldRole::Length:
    case FieldRole::Address:
    case FieldRole::Count:
    case FieldRole::Check:
        return " ";
    default:
        return ": ";
    }
}

std::string wrongBody(const DecodedFrame& frame) {
    const std::string has = "The body has " + counted(frame.bodyLength, "byte");
    if (frame.bodyWanted && *frame.bodyWanted != frame.bodyLength) {
        return has + "; " + std::to_string(*frame.bodyWanted) + " belong to " +
               (frame.answersRequest ? "what was asked." : "this kind.");
    }
    return has + ", which is no whole number of values.";
}

std::size_t bytesBehind(const DecodedFrame& frame) {
    const Field* const behind = frame.find(FieldRole::Behind);
    return behind != nullptr ? behind->length : 0;
}

int numberOf(const DecodedFrame& frame, FieldRole role) {
    const Field* const field = frame.find(role);
    return field != nullptr ? field->number : 0;
}

std::string binaryDigits(int value, int bits) {
    std::string text;
    for (int bit = bits - 1; bit >= 0; --bit) {
        text += (value >> bit & 1) != 0 ? '1' : '0';
        text += bit % 4 == 0 && bit > 0 ? " " : "";
    }
    return text;
}

} // namespace

std::string counted(std::size_t number, const std::string& what) {
    return std::to_string(number) + ' ' + what + (number == 1 ? "" : "s");
}

std::string kindInWords(const FrameKind& kind) {
    if (kind.command == nullptr) {
        return "unknown";
    }
    const auto& access = kind.command->access;
    const std::string what = !access ? "mixed " : *access == Access::Bit ? "bit " : "word ";
    return (kind.isAnswer ? "answer to " : "") + what + (kind.command->writes ? "write" : "read");
}

std::string fieldName(const Field& field, const RegisterNames& names) {
    switch (field.role) {
    case FieldRole::Destination:
        return "DA";
    case FieldRole::Source:
        return "SA";
    case FieldRole::Command:
        return "CMD";
    case FieldRole::Length:
        return "LEN";
    case FieldRole::Address:
        return "Address";
    case FieldRole::Count:
        return "Count";
    case FieldRole::Value:
        return field.point ? names.describe(*field.point) : unnamed(field);
    case FieldRole::Acknowledgement:
        return "Acknowledgement";
    case FieldRole::Check:
        return "CRC";
    case FieldRole::Behind:
        return "Behind the frame";
    default:
        return "Body";
    }
}

std::string fieldValue(const DecodedFrame& frame, const Field& field, const RegisterNames& names) {
    switch (field.role) {
    case FieldRole::Destination:
    case FieldRole::Source:
        return "station " + std::to_string(field.number);
    case FieldRole::Command:
        return commandInWords(frame, field);
    case FieldRole::Length:
        return inBothBases(field.number, byteDigits);
    case FieldRole::Address:
        return addressInWords(field, names);
    case FieldRole::Count:
        return countInWords(field);
    case FieldRole::Value:
        return valueInWords(field);
    case FieldRole::Acknowledgement:
        return hexNumber(field.number, byteDigits) + (field.number == 0 ? ", written" : "");
    case FieldRole::Check:
        return checkInWords(frame, field);
    default:
        return counted(field.length, "byte");
    }
}

std::string fieldInWords(const DecodedFrame& frame, const Field& field, const RegisterNames& names) {
    return fieldName(field, names) + separatorOf(field.role) + fieldValue(frame, field, names);
}

std::string faultInWords(const DecodedFrame& frame, Fault fault) {
    switch (fault) {
    case Fault::Cut:
        return "The frame is cut: " + counted(frame.missing, "byte") +
               (frame.missing == 1 ? " is missing." : " are missing.");
    case Fault::WrongLength:
        return "LEN says " + std::to_string(numberOf(frame, FieldRole::Length)) + ", the body has " +
               counted(frame.bodyLength, "byte") + ".";
    case Fault::WrongBody:
        return wrongBody(frame);
    case Fault::WrongCheck:
        return "The check is " + hexNumber(numberOf(frame, FieldRole::Check), wordDigits) +
               "; of the bytes before it, it is " + hexNumber(frame.checkRight, wordDigits) + ".";
    case Fault::UnknownCommand:
        return hexNumber(numberOf(frame, FieldRole::Command), byteDigits) +
               " is no command of this protocol.";
    default:
        return counted(bytesBehind(frame), "byte") + " more than the frame has.";
    }
}

std::string runsInWords(const std::vector<PointRun>& runs, const RegisterNames& names) {
    std::string text;
    for (const PointRun& run : runs) {
        text += (text.empty() ? "" : ", ") + names.describe(run.first);
        if (run.count > 1) {
            text += " .. " + nameOf({run.first.access, run.first.address + run.count - 1});
        }
    }
    return text;
}

NumberForms numberForms(Access access, int value) {
    const int bits = 8 * valueSize(access);
    const int half = 1 << (bits - 1);
    return {std::to_string(value), std::to_string(value >= half ? value - 2 * half : value),
            hexNumber(value, static_cast<std::size_t>(bits / 4)), binaryDigits(value, bits)};
}

} // namespace varda::core
