#pragma once

#include "link/frame_image.h"
#include "link/link_port.h"
#include "link/serial_link.h"
#include "platform/events.h"
#include "platform/message_boxes.h"
#include "platform/mscomm.h"
#include "platform/timers.h"
#include "shell/window_form.h"

#include <QMainWindow>

#include <memory>

class QRadioButton;

namespace varda {

namespace Ui {
class FrmVarda;
}
class MixedReadPage;
class MixedWritePage;
class ReadPage;
class WritePage;

/// The main window: owns the link, the timers, the frame images and the pages, and wires them; switches the
/// modes.
class FrmVarda : public QMainWindow {
    Q_OBJECT

public:
    /// @param clock where waits come from @param makeLine turns a port's name into a closed line
    /// @param random draws a number of at least 0 and below 1
    FrmVarda(Clock& clock, const MSComm::LineFactory& makeLine, std::function<double()> random,
             QWidget* parent = nullptr);
    ~FrmVarda() override;

    Form& form() { return form_; }
    LinkState& linkState() { return link_.state(); }
    const FrameImages& images() const { return images_; }

    /// Shows the page of a mode and prepares it; an index outside 0 .. 5 does nothing.
    void optMode_Click(int index);

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void addPages(std::function<double()> random);
    void bind();
    void Form_Load();
    void fillSerialLists();
    void enterMode(int index);
    void cmdEnd_Click();
    void closePort();
    QRadioButton* modeOption(int index) const;

    std::unique_ptr<Ui::FrmVarda> ui_;
    MessageBoxes boxes_{this};
    Events events_{boxes_};
    WindowForm form_{events_, boxes_};

    MSComm commPLC_;
    MSComm commTest_;
    QtPeriodTimer tmrComm_;
    QtPeriodTimer tmrScenario_;
    FrameImages images_;
    SerialLink link_;
    LinkPort linkPort_;

    ReadPage* readPage_ = nullptr;
    WritePage* writePage_ = nullptr;
    MixedReadPage* mixedReadPage_ = nullptr;
    MixedWritePage* mixedWritePage_ = nullptr;
};

} // namespace varda
