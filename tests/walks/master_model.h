#pragma once

#include "walks/page_model.h"
#include "walks/period_model.h"

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace varda::walks {

/// The names of a page's controls, and what the link does with the page.
struct MasterNames {
    int mode;         ///< index of its mode option
    std::string kind; ///< lists
    std::string number;
    std::string bit;
    std::string count;       ///< empty where the page has none
    std::string destination; ///< station fields
    std::string source;
    std::string bitOption;
    std::string wordOption;
    std::string bitPoint;
    std::string sendButton;
    std::string continuous;
    std::string period;
    std::string request;
    std::string answer;
    std::string status;   ///< the page's own
    std::string received; ///< told of a complete answer
    std::string silence;  ///< told of none
    std::string opens;    ///< the send button that opening the port enables
    std::string closes;   ///< the one that closing it disables
    bool repeatsWhileWaiting;
    std::string startPeriod;
};

/// What the master pages share: fields and their events, the stations, the port, sending, the answer, the
/// ticks.
class MasterModel : public PageModel {
public:
    bool isPossible(const Action& action) const override;
    void apply(const Action& action) override;
    Shown shown() const override;

protected:
    explicit MasterModel(MasterNames names);

    const MasterNames& names() const { return names_; }
    bool bits() const { return bits_; }
    std::string& status() { return texts_[names_.status]; }

    std::string text(const std::string& control) const;
    /// The program sets a text, whose Change follows where it is another one.
    void setText(const std::string& control, const std::string& text);
    /// Sets a text without its Change.
    void putText(const std::string& control, const std::string& text) { texts_[control] = text; }
    void setItems(const std::string& list, std::vector<std::string> items) {
        items_[list] = std::move(items);
    }
    const std::vector<std::string>& items(const std::string& list) const { return items_.at(list); }
    void setEnabled(const std::string& control, bool enabled) { enabled_[control] = enabled; }
    bool isEnabled(const std::string& control) const;
    void setTicked(const std::string& control, bool ticked) { ticked_[control] = ticked; }
    bool isTicked(const std::string& control) const;
    void forget(const std::string& control) { unknown_.insert(control); }
    void know(const std::string& control) { unknown_.erase(control); }
    bool isOpen() const { return open_; }

    /// Change, Click and KeyPress of a field. The period field, the port's controls and the ticks are seen to
    /// here; all else is the page's.
    virtual void changed(const std::string& control) = 0;
    virtual void keyPressed(const std::string& control) { changed(control); }
    /// A button, box or option is clicked; one that the page does not have is none of its business.
    virtual void pressed(const std::string& control) = 0;
    virtual void optionChosen() = 0;
    virtual void modeEntered() = 0;
    virtual void stationChanged(const std::string& control) = 0;
    virtual void sendRequest() = 0;
    /// What belongs to an action that this class does not know.
    virtual bool isOwnActionPossible(const Action& /*action*/) const { return false; }
    virtual void applyOwn(const Action& /*action*/) {}

    /// The part of sending that touches the link; nothing where the port is closed.
    void resetLink();
    void sendAndWait(const Octets& octets, int expected);
    bool isComplete() const;
    /// The texts that repeating wants filled.
    virtual std::vector<std::string> repeatFields() const;

    Action drawCommon(std::mt19937& engine, const std::vector<std::string>& numberTexts) const;
    std::string drawnEntry(std::mt19937& engine, const std::string& list) const;
    void moveFocus(const std::string& control);
    void setBits(bool bits) { bits_ = bits; }

private:
    bool isList(const std::string& control) const { return items_.count(control) != 0; }
    bool isStation(const std::string& control) const;
    void handleChange(const std::string& control);
    void handleKey(const std::string& control);
    void handleClick(const std::string& control);
    /// The user alters a text; it may come out as it was.
    void editText(const std::string& control, const std::string& text);
    void typeOver(const std::string& control, const std::string& keys);
    void press(const std::string& control);
    void openOrClose();
    void visit();
    void chooseOption(bool bits);
    void tick();
    void answer(int count);

    MasterNames names_;
    bool bits_ = true;
    std::map<std::string, std::string> texts_;
    std::map<std::string, std::vector<std::string>> items_;
    std::map<std::string, bool> enabled_;
    std::map<std::string, bool> ticked_;
    std::set<std::string> unknown_;
    std::string focus_;
    PeriodModel period_;

    bool tested_ = false;
    bool open_ = false;
    bool timerRuns_ = false;
    int interval_ = 500;
    bool waiting_ = false;
    bool answered_ = false;
    int waitTicks_ = 0;
    int expected_ = 0;
};

} // namespace varda::walks
