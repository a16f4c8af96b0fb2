#include "window/insight/hex_view.h"

#include "core/protocol/hex_text.h"
#include "window/controls/frame_font.h"

#include <QScopedValueRollback>
#include <QTextBlock>

#include <algorithm>
#include <utility>

namespace varda::window {
namespace {

constexpr std::size_t bytesInLine = 16;
constexpr int offsetWidth = 6; ///< "0010  "
constexpr int byteWidth = 3;   ///< "FF "

/// Of the first digit of a byte.
int positionOf(std::size_t byte) {
    constexpr int lineWidth = offsetWidth + static_cast<int>(bytesInLine) * byteWidth;
    return static_cast<int>(byte / bytesInLine) * lineWidth + offsetWidth +
           static_cast<int>(byte % bytesInLine) * byteWidth;
}

QString linesOf(const Bytes& bytes) {
    QStringList lines;
    for (std::size_t begin = 0; begin < bytes.size(); begin += bytesInLine) {
        const auto line = std::span(bytes).subspan(begin, std::min(bytesInLine, bytes.size() - begin));
        const QString offset =
            QString::number(static_cast<qulonglong>(begin), 16).rightJustified(4, QLatin1Char('0')).toUpper();
        lines.append(offset + QStringLiteral("  ") + QString::fromStdString(hexSpaced(line)));
    }
    return lines.join(QLatin1Char('\n'));
}

} // namespace

HexView::HexView(QWidget* parent) : QPlainTextEdit(parent) {
    setFont(frameFont());
    setLineWrapMode(NoWrap);
    setReadOnly(true);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setTabChangesFocus(true);
    connect(this, &QPlainTextEdit::cursorPositionChanged, this, &HexView::tellChosen);
}

void HexView::showBytes(const Bytes& bytes) {
    const QScopedValueRollback<bool> moving(isMoving_, true);
    count_ = bytes.size();
    highlighted_ = {};
    flaws_.clear();
    setPlainText(linesOf(bytes));
    showMarks();
}

void HexView::showFlaws(std::vector<ByteRange> flaws) {
    flaws_ = std::move(flaws);
    showMarks();
}

void HexView::highlight(const ByteRange& bytes) {
    const QScopedValueRollback<bool> moving(isMoving_, true);
    highlighted_ = bytes;
    showMarks();
    const int caret = textCursor().position();
    const bool isInside = bytes.length > 0 && caret >= positionOf(bytes.begin) &&
                          caret < positionOf(bytes.begin + bytes.length - 1) + byteWidth;
    if (bytes.length > 0 && !isInside) {
        setTextCursor(cursorOver(bytes.begin, bytes.begin));
        ensureCursorVisible();
    }
}

QTextCursor HexView::cursorOver(std::size_t begin, std::size_t end) const {
    QTextCursor cursor(document());
    cursor.setPosition(positionOf(begin));
    if (end > begin) {
        constexpr int digits = 2;
        cursor.setPosition(positionOf(end - 1) + digits, QTextCursor::KeepAnchor);
    }
    return cursor;
}

/// Line by line, so that the offsets stay unmarked.
void HexView::addLines(QList<QTextEdit::ExtraSelection>& selections, const ByteRange& bytes,
                       const QTextCharFormat& format) const {
    const std::size_t end = std::min(bytes.begin + bytes.length, count_);
    for (std::size_t begin = bytes.begin; begin < end;) {
        const std::size_t lineEnd = std::min((begin / bytesInLine + 1) * bytesInLine, end);
        selections.append({cursorOver(begin, lineEnd), format});
        begin = lineEnd;
    }
}

void HexView::showMarks() {
    QTextCharFormat chosen;
    chosen.setBackground(palette().highlight());
    chosen.setForeground(palette().highlightedText());
    chosen.setFontWeight(QFont::Bold); // also where colours cannot be told apart
    QTextCharFormat flawed;
    flawed.setUnderlineStyle(QTextCharFormat::WaveUnderline);
    flawed.setUnderlineColor(palette().color(QPalette::Text));
    QList<QTextEdit::ExtraSelection> selections;
    addLines(selections, highlighted_, chosen);
    for (const ByteRange& flaw : flaws_) {
        addLines(selections, flaw, flawed);
    }
    setExtraSelections(selections);
}

/// The place left of a line's first byte belongs to it, and what is right of one to that one.
void HexView::tellChosen() {
    if (isMoving_ || count_ == 0) {
        return;
    }
    const QTextCursor caret = textCursor();
    const int column = std::max(0, caret.positionInBlock() - offsetWidth) / byteWidth;
    const std::size_t inLine = std::min(static_cast<std::size_t>(column), bytesInLine - 1);
    const std::size_t byte = static_cast<std::size_t>(caret.blockNumber()) * bytesInLine + inLine;
    emit byteChosen(static_cast<int>(std::min(byte, count_ - 1)));
}

} // namespace varda::window
