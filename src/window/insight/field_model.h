#pragma once

#include "core/base/bytes.h"
#include "core/insight/decoder.h"
#include "core/insight/register_names.h"

#include <QAbstractTableModel>

#include <optional>
#include <span>
#include <vector>

namespace varda::window {

/// Bytes side by side.
struct ByteRange {
    std::size_t begin = 0;
    std::size_t length = 0;

    bool operator==(const ByteRange&) const = default;
};

/// The fields of the frames of a burst as a table: a row for each frame, one for each of its flaws, and then
/// its fields with their bytes and what they say in four number forms.
class FieldModel : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column { Name, Place, Value, Decimal, Signed, Hex, Binary, ColumnCount };

    FieldModel(const RegisterNames& names, QObject* parent) : QAbstractTableModel(parent), names_(names) {}

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    void showFrames(const Bytes& bytes, const Bytes& request);
    void showNames();

    /// The bytes of a row; those of its frame where it is no field.
    ByteRange bytesOf(int row) const;
    /// The row of the field that a byte belongs to.
    std::optional<int> rowOf(std::size_t byte) const;
    /// Whether a row is a sentence, which has no number forms.
    bool isSentence(int row) const { return rows_.at(static_cast<std::size_t>(row)).field == nullptr; }
    /// The bytes of the fields with a flaw.
    std::vector<ByteRange> flawedBytes() const;

private:
    struct Row {
        std::size_t frame = 0;
        const Field* field = nullptr; ///< none for the frame itself and for its flaws
        std::optional<Fault> fault{};
    };

    void addRows(std::size_t frame);
    bool isFlawed(const Row& row) const;
    QString textOf(const Row& row, int column) const;
    QString nameOf(const Row& row) const;
    QString valueOf(const Row& row) const;
    QString placeOf(const ByteRange& bytes) const;

    const RegisterNames& names_;
    std::vector<DecodedFrame> frames_;
    std::vector<Row> rows_;
};

} // namespace varda::window
