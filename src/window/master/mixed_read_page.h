#pragma once

#include "window/master/mixed_page.h"

#include <memory>

namespace varda::window {

namespace Ui {
class MixedReadPage;
}

/// "Read Bit+Word": reads the bits and words of a point list in one request.
class MixedReadPage : public MixedPage {
    Q_OBJECT
    Q_DISABLE_COPY(MixedReadPage)

public:
    explicit MixedReadPage(const PageContext& context, QWidget* parent = nullptr);
    ~MixedReadPage() override;

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
    std::unique_ptr<Ui::MixedReadPage> ui_;
};

} // namespace varda::window
