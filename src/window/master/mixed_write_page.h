#pragma once

#include "window/master/mixed_page.h"

#include <memory>

namespace varda::window {

namespace Ui {
class MixedWritePage;
}

/// "Write Bit+Word": writes the bits and words of a point list, each line with its value, in one request.
class MixedWritePage : public MixedPage {
    Q_OBJECT
    Q_DISABLE_COPY(MixedWritePage)

public:
    explicit MixedWritePage(const PageContext& context, QWidget* parent = nullptr);
    ~MixedWritePage() override;

    void enterMode() override;

protected:
    void optionChosen(Access access) override;
    void makeFormat() override;
    std::string displayString() override;
    std::string newLine() const override;
    int listLength(const std::vector<std::string>& lines) const override;
    void makeBody(const std::vector<std::string>& lines, const LineVisitor& visit) override;
    int answerLength(const std::vector<std::string>& lines) const override;

private:
    void txtMWData_Change();
    void chkHexDec_Click();
    std::string wordValue() const;

    std::unique_ptr<Ui::MixedWritePage> ui_;
};

} // namespace varda::window
