#pragma once

#include "walks/master_model.h"

#include <array>

namespace varda::walks {

/// The page of single reads.
class ReadPageModel : public MasterModel {
public:
    ReadPageModel();

    std::vector<Action> opening() const override;
    Action draw(std::mt19937& engine) const override;

protected:
    void changed(const std::string& control) override;
    void keyPressed(const std::string& control) override;
    void pressed(const std::string& /*control*/) override {}
    void optionChosen() override;
    void modeEntered() override;
    void stationChanged(const std::string& control) override;
    void sendRequest() override;

private:
    void kindChanged();
    void numberChanged();
    void bitChanged();
    void countChanged();
    void setByte(std::size_t place, const std::string& digits);
    void setAddress(const std::string& address);
    void complete();
    void display();
    Octets octets() const;

    std::array<std::string, 9> image_;
};

} // namespace varda::walks
