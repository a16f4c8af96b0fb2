#pragma once

#include "window/master/master_page.h"
#include "window/master/register_fields.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

class QCheckBox;

namespace varda::window {

namespace Ui {
class WritePage;
}
class WriteGrid;

/// "Write Bit/Word": keeps the write request up to date with its fields and its data grid, sends it and shows
/// the answer.
class WritePage : public MasterPage {
    Q_OBJECT
    Q_DISABLE_COPY(WritePage)

public:
    /// @param random draws a number of at least 0 and below 1 for the random data
    WritePage(const PageContext& context, std::function<double()> random, QWidget* parent = nullptr);
    ~WritePage() override;

    /// The mode was chosen: continuous sending off, bit writing, lists and grid prepared anew.
    void enterMode();

protected:
    void optionChosen(Access access) override;
    void makeFormat() override;
    std::string displayString() override;
    void buildAndSend() override;
    void switchOnAfterSend() override;
    const RegisterFields& registerFields() const override { return register_; }

private:
    void cbWRegister_Change();
    void cbWRegAddress_Change();
    void cbWRegBit_Change();
    void cbWLength_Change();
    void chooseDataMode(QCheckBox* chosen, QCheckBox* other);
    void fillData();

    int count() const;
    int bit() const;
    /// A count of "0" lays all rows, whatever the bit.
    bool isForAllRows() const;
    int rowsOf(std::optional<int> bit) const;
    void layRows();
    void layGrid();
    void showBits();
    void showWords();
    void DisplayWMessage(const std::string& text);
    bool CheckWriteCell(int position);
    void editCell(int position);
    void toggleBit(int position);
    void openWordDialog(int position);
    void storeWord(int position, int value, const QString& text, bool hexadecimal);
    QString registerName(int position) const;

    std::unique_ptr<Ui::WritePage> ui_;
    RegisterFields register_;
    std::string numberOfBits_; ///< the register number that the bit was chosen for
    WriteGrid* grid_;
    std::function<double()> random_;
};

} // namespace varda::window
