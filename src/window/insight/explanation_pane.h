#pragma once

#include "core/insight/register_names.h"
#include "window/insight/explained.h"
#include "window/insight/field_model.h"

#include <QWidget>

#include <memory>

namespace varda::window {

namespace Ui {
class ExplanationPane;
}

/// Explains bytes: what became of them in a sentence, their fields, and the bytes themselves. Choosing a
/// field marks its bytes, choosing a byte its field.
class ExplanationPane : public QWidget {
    Q_OBJECT
    Q_DISABLE_COPY(ExplanationPane)

public:
    explicit ExplanationPane(QWidget* parent = nullptr);
    ~ExplanationPane() override;

    /// @param names outlive the pane; called once, before anything is explained
    void useNames(const RegisterNames& names);
    /// The same bytes once more keep the field that is chosen.
    void explain(const Explained& explained);
    void chooseByte(int place);
    void showNames() { fields_->showNames(); }
    /// The line that answers the shown one, or that it answers. @param caption empty where there is none
    void offerPartner(const QString& caption);

signals:
    void partnerWanted();

private:
    void showWords(const Explained& explained);
    void showFrames(const Explained& explained);
    void chooseRow(int row);

    std::unique_ptr<Ui::ExplanationPane> ui_;
    FieldModel* fields_ = nullptr;
    Explained explained_;
};

} // namespace varda::window
