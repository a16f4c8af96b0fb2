#pragma once

#include "walks/master_model.h"

#include <array>
#include <map>
#include <optional>
#include <set>
#include <utility>

namespace varda::walks {

/// The page of single writes, with its grid and its word dialog.
class WritePageModel : public MasterModel {
public:
    explicit WritePageModel(std::uint_fast32_t seed);

    std::vector<Action> opening() const override;
    Action draw(std::mt19937& engine) const override;
    bool isPossible(const Action& action) const override;
    Shown shown() const override;

protected:
    void changed(const std::string& control) override;
    void keyPressed(const std::string& control) override;
    void pressed(const std::string& control) override;
    void optionChosen() override;
    void modeEntered() override;
    void stationChanged(const std::string& control) override;
    void sendRequest() override;
    bool isOwnActionPossible(const Action& action) const override;
    void applyOwn(const Action& action) override;

private:
    struct Dialog {
        int position; ///< of the cell, from 0
        std::string text;
        bool hexadecimal = false;
    };

    void kindChanged();
    void numberChanged();
    void bitChanged();
    void countChanged();
    void layGrid();
    void showCells(const std::map<int, std::string>& before);
    bool isOverlong() const { return count() > (bits() ? 253 : 126); }
    void startBit();
    void cellClicked(int position);
    bool checkCell(int position);
    void endDialog(const std::string& how);
    void fillRandom();
    double nextRandom();

    int count() const;
    std::size_t length() const { return static_cast<std::size_t>(hexNumber(image_[3]).value); }
    void setAddress(const std::string& address);
    void complete();
    void display();
    Octets octets(std::size_t count) const;

    std::array<std::string, 1024> image_;
    std::map<int, std::string> cells_; ///< by position, from 0
    std::set<int> hexadecimalCells_;
    bool usesHexadecimal_ = false; ///< of the value that was entered last
    int rows_ = 1;
    std::string numberBefore_;
    bool laying_ = false;
    bool counting_ = false; ///< a count lays the grid empty
    std::optional<Dialog> dialog_;
    std::mt19937 random_;
};

} // namespace varda::walks
