#pragma once

#include "core/base/bytes.h"
#include "window/insight/field_model.h"

#include <QPlainTextEdit>

#include <vector>

namespace varda::window {

/// Bytes in lines of sixteen, with a caret: the byte under it is chosen, by a click or the arrow keys.
class HexView : public QPlainTextEdit {
    Q_OBJECT

public:
    explicit HexView(QWidget* parent = nullptr);

    void showBytes(const Bytes& bytes);
    /// Bytes with a flaw are underlined, whatever is chosen.
    void showFlaws(std::vector<ByteRange> flaws);
    /// Marks bytes as chosen and brings them into sight.
    void highlight(const ByteRange& bytes);
    const ByteRange& highlighted() const { return highlighted_; }

signals:
    void byteChosen(int place);

private:
    void addLines(QList<QTextEdit::ExtraSelection>& selections, const ByteRange& bytes,
                  const QTextCharFormat& format) const;
    QTextCursor cursorOver(std::size_t begin, std::size_t end) const;
    void showMarks();
    void tellChosen();

    std::size_t count_ = 0;
    std::vector<ByteRange> flaws_;
    ByteRange highlighted_;
    bool isMoving_ = false; ///< the program moves the caret, not the user
};

} // namespace varda::window
