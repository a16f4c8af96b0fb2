#pragma once

#include "core/protocol/mixed_requests.h"
#include "window/master/master_page.h"

#include <string>
#include <vector>

class QListWidget;
class QListWidgetItem;

namespace varda::window {

/// What the two mixed pages have in common: a list of points that is edited on the page and turned into one
/// request. The lines of the list are the only store of the points.
class MixedPage : public MasterPage {
    Q_OBJECT

public:
    /// Sends the request as its fields and points stand now, and awaits no answer.
    /// @throws RuntimeError where a field or a point cannot be read, and the port's
    void sendAsItStands();

protected:
    struct ListControls {
        QListWidget* lines;
        QPushButton* add;
        QPushButton* remove;
    };

    using MasterPage::MasterPage;
    void adopt(const Controls& controls, const ListControls& list);

    /// The line of the point that the fields name. @throws RuntimeError where a value cannot be read
    virtual std::string newLine() const = 0;
    /// The size of a list as the add button looks at it. @throws RuntimeError 6, 13
    virtual int listLength(const std::vector<std::string>& lines) const = 0;
    /// Writes the body of the request from the lines. @param visit told each line in turn
    /// @throws RuntimeError 6, 13
    virtual void makeBody(const std::vector<std::string>& lines, const LineVisitor& visit) = 0;
    /// Length of the answer to the lines, in bytes. @throws RuntimeError 6, 13
    virtual int answerLength(const std::vector<std::string>& lines) const = 0;

    /// What both pages do when their mode is chosen: continuous sending off, bit points, LEN of the image 0;
    /// the points stay.
    void prepareMode();
    void selectLine(std::size_t line);
    std::vector<std::string> pointLines() const;
    StationTexts stationTexts() const;

    void buildAndSend() override;
    void switchOnAfterSend() override;

private:
    void bitChosen();
    void countChosen();
    void addLine();
    void removeLine();
    void lineChosen();
    QListWidgetItem* markedLine() const;
    bool pointIsNamed() const;
    Bytes wire() const;

    ListControls list_{};
};

} // namespace varda::window
