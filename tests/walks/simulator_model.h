#pragma once

#include "walks/desk.h"

#include <optional>

namespace varda::window_model {

class World;

/// The simulator: its editor, its table of pairs, its responder and its files.
class SimulatorModel {
public:
    explicit SimulatorModel(World& world);

    /// What a click on the mode does; `then` follows once a question is answered.
    void enterMode();
    void switchStartButton();
    /// Answers what the link has read; false where nobody prepared an answer.
    bool answerRequest();

    void choose(const std::string& list, int index);
    void press(const std::string& button);
    void setOnOff(int index);
    void typeData(const std::string& text);
    void typeSendData(const std::string& text);
    void clickLine(const std::string& list, int row);
    void reload(int row);
    void save(const std::string& file);
    void load(const std::string& file);

    Action draw(Draw& draw) const;

private:
    /// Where the page stands.
    struct Place {
        std::string kind;
        int number;
        int bit;
    };

    void askBefore(const std::string& newKind, const std::function<void()>& then);
    void changeKind(const std::string& kind);
    void showFieldsOf(const std::string& kind);
    void offerFieldsOf(const std::string& kind);
    void registerOnTheWay(const std::string& newKind);
    void registerPair();
    void addPair();
    void chooseRegister();
    void rebuildRead();
    void chooseLength();
    void makeAnswer();
    bool dataIsRight(bool word);
    void addPoint();
    void delPoint();
    void stepForward();
    void stepBack();
    void rebuildWrite(const std::optional<Place>& place);
    void deletePair();
    void clearPairs();
    void selectPair(int row);
    void fillReloaded(const std::string& request, const std::string& answer);
    void rebuildPoints(const std::string& request);
    void finishEntering();

    bool isBit() const;
    bool isRead() const;
    std::string stations() const;
    std::string acknowledgement() const;
    std::string addressText(const Place& place) const;
    Place here() const;
    Place splitAddress(const std::string& lowFirst) const;
    void show(const Place& place, int width);
    std::optional<std::string> pointValue() const;
    Action drawField(Draw& draw) const;
    Action drawPair(Draw& draw) const;
    Action drawTraffic(Draw& draw) const;
    Action drawFile(Draw& draw) const;

    World& world_;
    std::string kind_;
    std::string answerKind_;
    int savedFiles_ = 0;
};

} // namespace varda::window_model
