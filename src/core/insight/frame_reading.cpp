#include "core/insight/frame_reading.h"

#include "core/insight/decoder.h"
#include "core/insight/field_words.h"

namespace varda::inline core {

std::string byteInWords(std::span<const std::uint8_t> frame, std::size_t index,
                        std::span<const std::uint8_t> request) {
    const DecodedFrame decoded = decode(frame, request);
    const Field* const field = decoded.fieldAt(index);
    return field != nullptr ? fieldInWords(decoded, *field) : std::string();
}

} // namespace varda::core
