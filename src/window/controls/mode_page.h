#pragma once

#include "core/link/routes.h"

#include <QWidget>

#include <string>

namespace varda::window {

/// The page of one mode, in a tab of the main window.
class ModePage : public QWidget {
    Q_OBJECT

public:
    using QWidget::QWidget;

    /// What the link does while the page is shown with its options as they stand.
    virtual Mode mode() const = 0;
    /// The mode was chosen and its controls are switched: prepares the page.
    virtual void enterMode() = 0;
    /// Clicks the page's send button, where it has one.
    virtual void clickSend() {}
    /// The request that the page shows; empty where it has none.
    virtual std::string requestText() const { return {}; }
};

} // namespace varda::window
