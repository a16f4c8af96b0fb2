#pragma once

#include "core/recordings/recording.h"
#include "window/bench/bench_context.h"
#include "window/bench/recording_loader.h"
#include "window/controls/companion_window.h"

#include <memory>

namespace varda::window {

namespace Ui {
class RecordingsPanel;
}
class RecordingPlayer;

/// "Recordings": a capture is played once more, or compared with another one.
class RecordingsPanel : public CompanionPart {
    Q_OBJECT
    Q_DISABLE_COPY(RecordingsPanel)

public:
    RecordingsPanel(RecordingPlayer& player, const BenchContext& context, QWidget* parent = nullptr);
    ~RecordingsPanel() override;

    /// Shows how things are now.
    void refresh() final;

private:
    void bind();
    void chooseCapture(void (RecordingsPanel::*use)(const QString& name, LoadedRecording& loaded));
    void load(const QString& path,
              void (RecordingsPanel::*use)(const QString& name, LoadedRecording& loaded));
    void open(const QString& name, LoadedRecording& loaded);
    void compareWith(const QString& name, LoadedRecording& loaded);
    void cancelLoading();
    void showLoading();

    BenchContext context_;
    RecordingPlayer& player_;
    std::unique_ptr<Ui::RecordingsPanel> ui_;
    Recording recording_;
    QString name_;    ///< of its file; empty where none is open
    QString missing_; ///< what of the file was not read
    RecordingLoader loader_;
};

} // namespace varda::window
