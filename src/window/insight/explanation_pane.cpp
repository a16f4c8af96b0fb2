#include "window/insight/explanation_pane.h"

#include "ui_explanation_pane.h"
#include "window/controls/make_form.h"
#include "window/controls/table_lines.h"
#include "window/insight/hex_view.h"

#include <array>

namespace varda::window {
namespace {

/// Of the fields, what usually stands in the columns.
constexpr std::array usualTexts = {"Acknowledgement", "00 .. 00", "0000h = 00000, right",
                                   "Decimal ",        "-00000 ",  "0000h "};

} // namespace

ExplanationPane::ExplanationPane(QWidget* parent)
    : QWidget(parent), ui_(makeForm<Ui::ExplanationPane>(this)) {
    const int line = ui_->hexBytes->fontMetrics().horizontalAdvance(QStringLiteral("0000  ") +
                                                                    QStringLiteral("00 ").repeated(17));
    ui_->fieldsAndBytes->setSizes({2 * line, line}); // the bytes get room for a line
    ui_->fieldsAndBytes->setStretchFactor(0, 2);     // in a narrow window, too
    ui_->fieldsAndBytes->setStretchFactor(1, 1);
    ui_->goToPartner->hide();
    connect(ui_->hexBytes, &HexView::byteChosen, this, &ExplanationPane::chooseByte);
    connect(ui_->goToPartner, &QPushButton::clicked, this, &ExplanationPane::partnerWanted);
}

ExplanationPane::~ExplanationPane() = default;

void ExplanationPane::useNames(const RegisterNames& names) {
    fields_ = new FieldModel(names, this);
    ui_->fieldTable->setModel(fields_);
    showLines(ui_->fieldTable, ui_->fieldTable->fontMetrics().height());
    fitColumns(ui_->fieldTable, usualTexts);
    connect(ui_->fieldTable->selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this](const QModelIndex& current) {
                if (current.isValid()) {
                    ui_->hexBytes->highlight(fields_->bytesOf(current.row()));
                }
            });
}

void ExplanationPane::explain(const Explained& explained) {
    if (explained == explained_) {
        return;
    }
    const bool isOther = explained.bytes != explained_.bytes || explained.request != explained_.request;
    explained_ = explained;
    showWords(explained);
    if (isOther) {
        showFrames(explained);
    }
}

void ExplanationPane::showWords(const Explained& explained) {
    const bool isWhole = explained.size == explained.bytes.size();
    ui_->explanationTitle->setText(isWhole ? explained.title
                                           : explained.title +
                                                 tr("   %1 bytes, of which the first %2 are kept")
                                                     .arg(static_cast<qulonglong>(explained.size))
                                                     .arg(static_cast<qulonglong>(explained.bytes.size())));
    ui_->explanationSentence->setText(explained.sentence);
    ui_->explanationSentence->setVisible(!explained.sentence.isEmpty());
}

void ExplanationPane::showFrames(const Explained& explained) {
    fields_->showFrames(explained.bytes, explained.request);
    ui_->fieldTable->clearSpans();
    for (int row = 0; row < fields_->rowCount(); ++row) {
        if (fields_->isSentence(row)) {
            ui_->fieldTable->setSpan(row, FieldModel::Value, 1, FieldModel::ColumnCount - FieldModel::Value);
        }
    }
    ui_->hexBytes->showBytes(explained.bytes);
    ui_->hexBytes->showFlaws(fields_->flawedBytes());
}

void ExplanationPane::chooseByte(int place) {
    if (const auto row = fields_->rowOf(static_cast<std::size_t>(place))) {
        chooseRow(*row);
    }
}

void ExplanationPane::chooseRow(int row) {
    const QModelIndex field = fields_->index(row, 0);
    ui_->fieldTable->setCurrentIndex(field);
    ui_->fieldTable->scrollTo(field);
}

void ExplanationPane::offerPartner(const QString& caption) {
    ui_->goToPartner->setText(caption);
    ui_->goToPartner->setVisible(!caption.isEmpty());
}

} // namespace varda::window
