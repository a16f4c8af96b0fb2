#pragma once

#include "walks/master_model.h"

#include <array>

namespace varda::walks {

/// What the two mixed pages share: a list of points, and a request that is built of it.
class MixedPageModel : public MasterModel {
public:
    std::vector<Action> opening() const override;
    bool isPossible(const Action& action) const override;
    Shown shown() const override;

protected:
    struct ListNames {
        std::string list;
        std::string add;
        std::string remove;
        std::string command;
    };
    MixedPageModel(MasterNames names, ListNames listNames);

    void changed(const std::string& control) override;
    void keyPressed(const std::string& /*control*/) override {}
    void pressed(const std::string& control) override;
    void optionChosen() override;
    void modeEntered() override;
    void stationChanged(const std::string& control) override;
    void sendRequest() override;
    bool isOwnActionPossible(const Action& action) const override;
    void applyOwn(const Action& action) override;

    /// One line as the request's builder cuts it.
    struct Point {
        bool isBit = false;
        std::string kind;
        std::string number;
        std::string bit;
        std::string last;
    };
    static Point cut(const std::string& line);
    /// Kind and number as a word address; false after an error.
    bool address(const Point& point, int& word);

    /// The new line, or none where a field is empty.
    virtual std::string newLine() = 0;
    /// What the list counts against its limit, line by line; false after an error.
    virtual bool countPoint(const Point& point, int& sum) = 0;
    /// Adds the octets of a line to the body; false after an error.
    virtual bool buildPoint(const Point& point) = 0;
    /// What a line should have added to the body; false after an error.
    virtual bool pointLength(const Point& point, int& sum) = 0;
    virtual int expectedLength(int answerBytes) const = 0;

    void put(int place, const std::string& digits) { image_.at(static_cast<std::size_t>(place)) = digits; }
    int length() const { return length_; }
    /// Raises LEN, an 8-bit number; false where it does not fit.
    bool grow(int octets);
    bool addTo(int& sum, int octets);
    std::size_t lines() const { return lines_.size(); }

private:
    bool countLines(int& sum);
    void select(std::size_t line);
    void add();
    void remove();
    bool build();
    bool makeHeader();
    void display();
    Octets octets(int count) const;

    ListNames listNames_;
    std::vector<std::string> lines_;
    int selected_ = -1;
    bool selectionKnown_ = false;
    /// A line was removed; no rule says which one is selected then, and whether another Del takes it.
    bool selectionIsOpen_ = false;
    std::array<std::string, 513> image_;
    int length_ = 0;
};

/// The page of mixed reads.
class MixedReadPageModel : public MixedPageModel {
public:
    MixedReadPageModel();
    Action draw(std::mt19937& engine) const override;

protected:
    void modeEntered() override;
    std::string newLine() override;
    bool countPoint(const Point& point, int& sum) override;
    bool buildPoint(const Point& point) override;
    bool pointLength(const Point& point, int& sum) override;
    int expectedLength(int answerBytes) const override { return answerBytes + 6; }
};

/// The page of mixed writes.
class MixedWritePageModel : public MixedPageModel {
public:
    MixedWritePageModel();
    Action draw(std::mt19937& engine) const override;

protected:
    void changed(const std::string& control) override;
    void pressed(const std::string& control) override;
    void modeEntered() override;
    std::string newLine() override;
    bool countPoint(const Point& point, int& sum) override;
    bool buildPoint(const Point& point) override;
    bool pointLength(const Point& point, int& sum) override;
    int expectedLength(int /*answerBytes*/) const override { return 7; }

private:
    void dataChanged();
    void cutData(const std::string& message);
};

} // namespace varda::walks
