#include "tour/fault_pictures.h"

#include "support/driven_window.h"
#include "support/twelve_faults.h"
#include "tour/pictures.h"
#include "window/insight/explanation_pane.h"
#include "window/insight/insight_window.h"

#include <QApplication>
#include <QHeaderView>
#include <QLabel>
#include <QPixmap>
#include <QSplitter>
#include <QTableView>

#include <cstdio>

namespace {

using varda::test::DrivenWindow;
using varda::test::LineFault;
using varda::window::ExplanationPane;

/// A window that asks, and a far end that does wrong.
class FaultScene {
public:
    explicit FaultScene(const LineFault& fault) {
        window_.click("openTrace");
        window_.paste("cbPort", "COM1");
        window_.click("cmdCommTest");
        window_.click("cmdPortOpen");
        window_.click("optRead_1");
        window_.paste("txtRDDA", "5");
        window_.paste("txtRDSA", "0");
        window_.choose("cbRegister", 6); // W
        window_.choose("cbRegAddress", 0);
        window_.choose("cbRLength", 1);
        play(fault);
        chooseLine(fault.line);
    }

    std::string verdict() { return find<QLabel>("explanationSentence")->text().toStdString(); }

    /// Sentence, fields and bytes; the line above them has the time of day, which is another one every time.
    QImage picture() {
        constexpr int width = 1000;
        constexpr int edge = 6;
        auto* const pane = find<ExplanationPane>("explanation");
        auto* const fields = find<QTableView>("fieldTable");
        const auto* const sentence = find<QLabel>("explanationSentence");
        fields->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        find<QSplitter>("fieldsAndBytes")->setSizes({56, 44});
        pane->setParent(nullptr);
        pane->setContentsMargins(edge, edge, edge, edge);
        pane->resize(width, pane->sizeHint().height());
        pane->show();
        QApplication::processEvents();
        const int rows = fields->horizontalHeader()->height() + fields->verticalHeader()->length();
        pane->resize(width, pane->height() + rows - fields->contentsRect().height());
        QApplication::processEvents();
        const int top = sentence->y() - edge;
        QImage picture = pane->grab(QRect(0, top, width, pane->height() - top)).toImage();
        pane->setParent(trace_);
        return picture;
    }

private:
    template <typename Control>
    Control* find(const char* name) {
        return trace_->findChild<Control*>(QLatin1String(name));
    }

    void play(const LineFault& fault) {
        trace_ = window_.window().insight().window();
        window_.click("cmdRDSend");
        for (const LineFault::Piece& piece : fault.pieces) {
            window_.advance(piece.after);
            window_.farEnd().deliver(piece.bytes);
        }
        window_.advance(400);
    }

    /// The received line of that number, or the last one.
    void chooseLine(int wanted) {
        auto* const table = find<QTableView>("traceTable");
        QModelIndex line;
        int received = 0;
        for (int row = 0; row < table->model()->rowCount(); ++row) {
            const QModelIndex cell = table->model()->index(row, 2);
            if (cell.data().toString() == QLatin1String("received") && (wanted < 0 || received++ == wanted)) {
                line = cell;
            }
        }
        table->setCurrentIndex(line);
    }

    DrivenWindow window_;
    varda::window::InsightWindow* trace_ = nullptr;
};

} // namespace

int takeFaults(Pictures& pictures) {
    int failures = 0;
    for (const LineFault& fault : varda::test::twelveFaults()) {
        FaultScene scene(fault);
        const std::string verdict = scene.verdict();
        const bool isRight = verdict.ends_with(fault.verdict);
        std::printf("\nA fault, %s\n  verdict  %s\n  %s\n", fault.name, verdict.c_str(),
                    isRight ? "right" : "WRONG");
        failures += isRight && pictures.save(scene.picture(), fault.name) ? 0 : 1;
    }
    return failures;
}
