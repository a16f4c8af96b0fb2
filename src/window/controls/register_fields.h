#pragma once

#include "core/protocol/registers.h"

#include <optional>
#include <string>

class QWidget;

namespace varda::window {

class DropDownList;

/// The lists of a page that name a register: kind, number, bit and, where the page has one, count.
class RegisterFields {
public:
    struct Lists {
        DropDownList* kind;
        DropDownList* number;
        DropDownList* bit;
        QWidget* dot;        ///< between number and bit
        DropDownList* count; ///< nullptr where the page has no count
    };

    explicit RegisterFields(const Lists& lists);
    const Lists& lists() const { return lists_; }

    /// Offers the kinds of an access and the counts up to `countLimit`; shows the bit for bit access only.
    /// All texts are empty afterwards; the bits that are offered stay.
    void offer(Access access, int countLimit);

    /// Offers the numbers and bits of the kind that is chosen; none for an unknown one.
    void offerNumbers();

    /// Offers the bits again, with none chosen.
    void offerBits();

    std::string kindText() const;
    std::string numberText() const;
    std::string bitText() const;
    std::string countText() const;
    bool hasKind() const;
    bool hasNumber() const;
    bool hasBit() const;
    /// True where the page has no count.
    bool hasCount() const;
    /// Whether the register of a first point is named, for bit access with its bit.
    bool isNamed(Access access) const;

    /// The chosen number. @throws RuntimeError 13, 6 where it is none
    int number() const;
    /// The chosen number, bit and count; nothing where the text is none.
    std::optional<int> readableNumber() const;
    std::optional<int> readableBit() const;
    std::optional<int> readableCount() const;
    /// Word address of the chosen register. @throws RuntimeError 13, 6 where the number is none
    int wordAddress(Access access) const;
    /// The chosen bit. @throws RuntimeError 13, 6
    int bitNumber() const;

private:
    Lists lists_;
};

} // namespace varda::window
