#pragma once

#include "support/driven_window.h"
#include "walks/desk.h"

namespace varda::window_model {

/// Does to the real window what the steps of a walk say, and tells what is seen of it then.
class WindowHands : public walks::Hands {
public:
    void perform(const Action& action) override;
    std::string shown(const std::string& name) override;

private:
    void press(const std::string& button);
    void fill(const std::string& page, const std::string& how);
    void fillSingle(const std::string& prefix, int number, int count, bool word);
    void writeFile(const std::string& name, const std::string& value);
    void answerDialog(const std::string& button, const std::string& file);
    void takeWritten();
    std::string seeControl(const std::string& name, const std::string& what);
    std::string seeBox();
    std::string logText(const std::string& file);

    test::DrivenWindow window_;
    std::string written_;
};

} // namespace varda::window_model
