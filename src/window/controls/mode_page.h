#pragma once

#include <QWidget>

#include <cstdint>

namespace varda::window {

/// The page of one mode, in a tab of the main window.
class ModePage : public QWidget {
    Q_OBJECT

public:
    using QWidget::QWidget;

    /// CommMode of the page and of the option that is chosen on it.
    virtual std::int16_t commMode() const = 0;
    /// The mode was chosen and its controls are switched: prepares the page.
    virtual void enterMode() = 0;
    /// Clicks the page's send button, where it has one.
    virtual void clickSend() {}
};

} // namespace varda::window
