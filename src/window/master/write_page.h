#pragma once

#include "window/master/single_page.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

class QCheckBox;

namespace varda::inline core {
struct WordsThatFit;
} // namespace varda::core

namespace varda::window {

namespace Ui {
class WritePage;
}
class WriteGrid;

/// "Write Bit/Word": keeps the write request up to date with its fields and its data grid, sends it and shows
/// the answer.
class WritePage : public SinglePage {
    Q_OBJECT
    Q_DISABLE_COPY(WritePage)

public:
    /// @param random draws a number of at least 0 and below 1 for the random data
    WritePage(const PageContext& context, std::function<double()> random, QWidget* parent = nullptr);
    ~WritePage() override;

    /// Continuous sending off, bit writing, lists and grid prepared anew.
    void enterMode() override;

protected:
    int countLimit(Access access) const override;
    void accessTaken(Access access) override;
    void kindTaken() override;
    void numberTaken() override;
    void takeBit() override;
    void takeCount(int count) override;
    void makeFormat() override;
    std::string displayString() override;
    void buildAndSend() override;
    void switchOnAfterSend() override;

private:
    void chooseDataMode(QCheckBox* chosen, QCheckBox* other);
    void fillData();

    int count() const;
    /// So many points, or none while the count is emptied.
    int ofCount(int points) const;
    /// A count of "0" lays all rows, whatever the bit.
    bool isForAllRows() const;
    int rowsOf(std::optional<int> bit) const;
    void layRows();
    void layGrid();
    void showBits();
    void showWords();
    void DisplayWMessage(const std::string& text);
    /// The cells that may be edited.
    struct Positions {
        int first;
        int last;
        bool contain(int position) const { return position >= first && position <= last; }
    };
    /// @throws RuntimeError 13, 6 where bit or number is none
    Positions validPositions() const;
    bool CheckWriteCell(int position);
    void editCell(int position);
    void toggleBit(int position);
    void openWordDialog(int position);
    void storeWord(int position, int value, const QString& text, bool hexadecimal);
    void pasteWords(int position, const QString& text);
    void enterWords(int position, const WordsThatFit& fit);
    QString registerName(int position) const;
    std::string bitCellName(int position) const;
    QString describeCell(int position) const;
    std::string describeBit(int position) const;
    std::string describeWord(int position) const;

    std::unique_ptr<Ui::WritePage> ui_;
    std::string numberOfBits_; ///< the register number that the bit was chosen for
    WriteGrid* grid_;
    std::function<double()> random_;
    bool usesHexadecimal_ = false; ///< of the value that was entered last, for an empty cell
};

} // namespace varda::window
