#pragma once

#include "window/master/master_page.h"

#include <string>

namespace varda::window {

/// What the read and the write page have in common: one register, from which on so many points are asked for,
/// and a request that follows these fields.
class SinglePage : public MasterPage {
    Q_OBJECT

protected:
    using MasterPage::MasterPage;

    /// Takes the controls over and binds them; called once by the page's constructor.
    void adopt(const Controls& controls);

    /// The highest count that is offered.
    virtual int countLimit(Access access) const = 0;
    /// A field was taken over; the request is shown afterwards.
    virtual void accessTaken(Access /*access*/) {}
    virtual void kindTaken() {}
    virtual void numberTaken() {}
    /// Writes the address of the bit that is named into the request. @throws RuntimeError 6, 13
    virtual void takeBit();
    virtual void takeCount(int count) = 0;

    void optionChosen(Access access) override;

private:
    void kindChanged();
    void numberChanged();
    void bitChanged();
    void countChanged();
    void writeAddress(const std::string& digits);
};

} // namespace varda::window
