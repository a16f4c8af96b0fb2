#pragma once

#include "walks/link_model.h"

namespace varda::window_model {

/// The master pages as far as the link and the scenario meet them: fields that are filled all at once, a
/// request that follows from them, and sending it.
class PagesModel {
public:
    explicit PagesModel(World& world);

    /// "bit 3 5" or "word 3": number, and count where the page has one.
    void fill(const Page& page, const std::string& how);
    void chooseAccess(const Page& page, bool word);
    void changePeriod(const std::string& field, const std::string& text);
    void enterMode(int index);
    /// By its button or by the timer.
    void send(const Page& page);
    bool isFilled(const Page& page) const { return fillings_.at(page.name).complete; }
    bool isWord(const Page& page) const { return fillings_.at(page.name).word; }
    /// The mixed request of the simulator's way out, which the mixed pages build.
    Octets mixedRequest(const Page& page);

    Action draw(Draw& draw) const;

private:
    struct Filling {
        bool word = false;
        bool complete = false;
        int number = 0;
        int address = 0; ///< it stays in the request when the page is entered anew
        int count = 0;
        Octets lines;      ///< a mixed page's body
        int answer = 0;    ///< octets of data that a mixed read asks for
        Octets image = {}; ///< of a mixed page, as it was sent last
        int lineCount = 0;
    };

    Octets singleRequest(const Page& page) const;
    void addMixedLine(const Page& page, Filling& filling) const;
    int expectedAnswer(const Page& page) const;
    void switchAround(const Page& page);

    World& world_;
    std::map<std::string, Filling> fillings_;
};

} // namespace varda::window_model
