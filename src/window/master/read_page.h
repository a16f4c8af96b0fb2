#pragma once

#include "window/master/master_page.h"
#include "window/master/register_fields.h"

#include <memory>

namespace varda::window {

namespace Ui {
class ReadPage;
}

/// "Read Bit/Word": keeps the read request up to date with its fields, sends it and shows the answer.
class ReadPage : public MasterPage {
    Q_OBJECT
    Q_DISABLE_COPY(ReadPage)

public:
    explicit ReadPage(const PageContext& context, QWidget* parent = nullptr);
    ~ReadPage() override;

    /// The mode was chosen: continuous sending off, bit reading, lists filled anew.
    void enterMode();

protected:
    void optionChosen(Access access) override;
    void makeFormat() override;
    std::string displayString() override;
    void buildAndSend() override;
    void switchOnAfterSend() override;
    const RegisterFields& registerFields() const override { return register_; }

private:
    void cbRegister_Change();
    void cbRegAddress_Change();
    void cbRegBit_Change();
    void cbRLength_Change();

    std::unique_ptr<Ui::ReadPage> ui_;
    RegisterFields register_;
};

} // namespace varda::window
