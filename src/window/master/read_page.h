#pragma once

#include "window/master/single_page.h"

#include <memory>

namespace varda::window {

namespace Ui {
class ReadPage;
}

/// "Read Bit/Word": keeps the read request up to date with its fields, sends it and shows the answer.
class ReadPage : public SinglePage {
    Q_OBJECT
    Q_DISABLE_COPY(ReadPage)

public:
    explicit ReadPage(const PageContext& context, QWidget* parent = nullptr);
    ~ReadPage() override;

    /// Continuous sending off, bit reading, lists filled anew.
    void enterMode() override;

protected:
    int countLimit(Access access) const override;
    void takeCount(int count) override;
    void makeFormat() override;
    std::string displayString() override;
    void buildAndSend() override;
    void switchOnAfterSend() override;

private:
    std::unique_ptr<Ui::ReadPage> ui_;
};

} // namespace varda::window
