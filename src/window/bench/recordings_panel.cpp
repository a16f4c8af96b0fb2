#include "window/bench/recordings_panel.h"

#include "core/base/runtime_error.h"
#include "core/recordings/recording_difference.h"
#include "core/recordings/recording_words.h"
#include "ui_recordings_panel.h"
#include "window/bench/recording_player.h"
#include "window/controls/counted_text.h"
#include "window/controls/events.h"
#include "window/controls/file_dialogs.h"
#include "window/controls/make_form.h"
#include "window/controls/saving.h"
#include "window/controls/wrapping_row.h"

#include <QFileInfo>

#include <utility>

namespace varda::window {
namespace {

FileDialogs::Kind captureFiles() { return {QStringLiteral(".pcapng"), QStringLiteral("Log")}; }

/// What of the file was not read.
QString missingInWords(const ReadCapture& read) {
    QStringList words;
    if (read.incomplete > 0) {
        words.append(RecordingsPanel::tr("%1 left out, of which not all bytes were kept.")
                         .arg(countedText(read.incomplete, "packet")));
    }
    if (read.isCut) {
        words.append(RecordingsPanel::tr("The file ends within a packet; those before it were read."));
    }
    return words.join(QLatin1Char(' '));
}

} // namespace

RecordingsPanel::RecordingsPanel(RecordingPlayer& player, const BenchContext& context, QWidget* parent)
    : CompanionPart(parent),
      context_(context),
      player_(player),
      ui_(makeForm<Ui::RecordingsPanel>(this)),
      loader_(context.clock, [this] { showLoading(); }) {
    WrappingRow::replace(ui_->recordingsPanelLayout, ui_->playRow);
    bind();
    refresh();
}

RecordingsPanel::~RecordingsPanel() = default;

void RecordingsPanel::bind() {
    Events& events = context_.events;
    events.click(ui_->openRecording, [this] { chooseCapture(&RecordingsPanel::open); });
    events.click(ui_->compareRecording, [this] { chooseCapture(&RecordingsPanel::compareWith); });
    events.click(ui_->cancelLoading, [this] { cancelLoading(); });
    events.click(ui_->playRecording, [this] { player_.play(ui_->playSpeed->value()); });
    events.click(ui_->stepRecording, [this] { player_.step(); });
    events.click(ui_->stopRecording, [this] { player_.stop(); });
    events.click(ui_->rewindRecording, [this] { player_.rewind(); });
    connect(&player_, &RecordingPlayer::wentOn, this, &RecordingsPanel::refresh);
}

void RecordingsPanel::chooseCapture(void (RecordingsPanel::*use)(const QString& name,
                                                                 LoadedRecording& loaded)) {
    const FileDialogs::Chosen chosen = [this, use](const QString& path) { load(path, use); };
    context_.files.chooseToOpen(captureFiles(), context_.events.guarded(chosen));
}

/// What is no capture is told, and changes nothing.
void RecordingsPanel::load(const QString& path,
                           void (RecordingsPanel::*use)(const QString& name, LoadedRecording& loaded)) {
    const QString name = QFileInfo(path).fileName();
    ui_->loadProgress->setFormat(
        tr("Reading %1: %p%").arg(QString(name).replace(QLatin1Char('%'), QString())));
    loader_.start(
        path,
        [this, name, use](LoadedRecording loaded) {
            (this->*use)(name, loaded);
            refresh();
        },
        [this](const RuntimeError& error) {
            context_.talk.tell(error);
            refresh();
        });
    refresh();
}

void RecordingsPanel::cancelLoading() {
    loader_.cancel();
    refresh();
    ui_->openRecording->setFocus(); // the button that was pressed is gone
}

void RecordingsPanel::open(const QString& name, LoadedRecording& loaded) {
    const QString held = tr("%1: %2. %3 to play.")
                             .arg(name, QString::fromStdString(inWords(sizeOf(loaded.read.recording))),
                                  countedText(loaded.frames.size(), "frame"));
    missing_ = missingInWords(loaded.read);
    recording_ = std::move(loaded.read.recording);
    name_ = name;
    ui_->comparison->clear();
    ui_->recordingState->setText(missing_.isEmpty() ? held : held + QLatin1Char(' ') + missing_);
    player_.load(std::move(loaded.frames));
}

void RecordingsPanel::compareWith(const QString& name, LoadedRecording& loaded) {
    QStringList lines = {tr("%1 and %2").arg(name_, name),
                         QString::fromStdString(inWords(compare(recording_, loaded.read.recording)))};
    for (const auto& [file, missing] :
         {std::pair(name_, missing_), std::pair(name, missingInWords(loaded.read))}) {
        if (!missing.isEmpty()) {
            lines.append(file + QLatin1String(": ") + missing);
        }
    }
    ui_->comparison->setPlainText(lines.join(QLatin1Char('\n')));
}

void RecordingsPanel::refresh() {
    const PlayerProgress progress = player_.progress();
    const bool hasFrames = progress.frames > 0;
    const bool mayGoOn = hasFrames && !player_.isAtEnd() && !player_.isPlaying();
    const bool isLoading = loader_.isRunning();
    ui_->loadingPart->setVisible(isLoading);
    ui_->openRecording->setEnabled(!isLoading);
    ui_->playRecording->setEnabled(mayGoOn);
    ui_->stepRecording->setEnabled(mayGoOn);
    ui_->stopRecording->setEnabled(player_.hasPort());
    ui_->rewindRecording->setEnabled(progress.played > 0);
    ui_->compareRecording->setEnabled(!name_.isEmpty() && !isLoading);
    ui_->playSpeed->setEnabled(!player_.isPlaying());
    ui_->playProgress->setMaximum(hasFrames ? static_cast<int>(progress.frames) : 1);
    ui_->playProgress->setValue(static_cast<int>(progress.played));
    ui_->playState->setText(hasFrames ? QString::fromStdString(inWords(progress)) + QLatin1Char('.')
                                      : QString());
    showLoading();
}

void RecordingsPanel::showLoading() {
    ui_->loadProgress->setValue(static_cast<int>(loader_.progress() * ui_->loadProgress->maximum()));
}

} // namespace varda::window
