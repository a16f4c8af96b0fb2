#pragma once

#include "core/link/routes.h"
#include "core/protocol/registers.h"
#include "window/controls/mode_page.h"
#include "window/controls/page_context.h"
#include "window/controls/register_fields.h"

#include <optional>
#include <string>

class QCheckBox;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;
class QRadioButton;

namespace varda::inline core {
class FrameImage;
} // namespace varda::core

namespace varda::window {

/// What the four master pages have in common: two options for the access, two stations, the register of a
/// point, a period, a request that is shown while its fields change, and a send button.
class MasterPage : public ModePage {
    Q_OBJECT

public:
    /// The Click of the send button: checks the fields, sends, and switches on what a send switches off.
    void sendRequest();

    /// A tick on which the page may send by itself: does so where its box is ticked and every field is
    /// filled. @throws RuntimeError of the send; the box is not ticked any more then
    void repeatRequest();

    Mode mode() const override;
    /// Takes both stations into the request anew, and shows it. @throws RuntimeError where a point cannot be
    /// read
    void takeStations();
    /// Whether the page is the one of that mode.
    bool serves(Mode mode) const { return findRoute(mode) == &route_; }
    std::string requestText() const override;
    void clickSend() override;
    /// Continuous sending ends, and can be begun again only once it is enabled.
    void enableSending(bool enabled);

protected:
    /// The controls of the page's form that the common behaviour works on.
    struct Controls {
        QRadioButton* bitOption;
        QRadioButton* wordOption;
        QLineEdit* destination;
        QLineEdit* source;
        RegisterFields::Lists registerLists;
        QPushButton* send;
        QCheckBox* continuous;
        QLineEdit* period;
        QPlainTextEdit* request;
        QPlainTextEdit* answer;
        QLineEdit* status;
    };

    /// @param bitMode what the link does while the page's bit option is chosen
    MasterPage(const PageContext& context, Mode bitMode, QWidget* parent);

    /// Takes the controls over and binds them; called once by the page's constructor.
    void adopt(const Controls& controls);

    /// An option was chosen: sets the page up for that access.
    virtual void optionChosen(Access access) = 0;
    /// Make...Format of the page. @throws RuntimeError where a point cannot be read
    virtual void makeFormat() = 0;
    /// Display...String of the page.
    virtual std::string displayString() = 0;
    /// Builds and sends the request; the required fields are filled.
    virtual void buildAndSend() = 0;
    /// Switches on again what the send had switched off.
    virtual void switchOnAfterSend() = 0;

    const PageContext& context() const { return context_; }
    Access access() const { return chosenAccess().value_or(Access::Bit); }
    std::optional<Access> chosenAccess() const;
    RegisterFields& fields() { return *fields_; }
    const RegisterFields& fields() const { return *fields_; }
    FrameImage& image();

    std::string stationText(std::size_t index) const;
    /// Empties the status line and prepares the link. @return false where the port is closed, which the
    /// status line tells then
    bool startRequest();
    /// All is well where no option is chosen.
    bool isFilledToSend() const { return !chosenAccess() || fields().isNamed(access()); }
    void showStatus(const std::string& text);
    void stopRepeating();
    void chooseBitOption();
    void clearRequest();
    void clearAnswer();
    void showRequest();
    void makeRequest();

private:
    void takeStation(std::size_t index);
    void takePeriod();

    PageContext context_;
    const Route& route_;
    Controls controls_{};
    std::optional<RegisterFields> fields_;
};

} // namespace varda::window
