#include "window/bench/recordings_panel.h"

#include "core/base/runtime_error.h"
#include "core/recordings/capture_loading.h"
#include "core/recordings/recording_words.h"
#include "ui_recordings_panel.h"
#include "window/bench/recording_player.h"
#include "window/controls/counted_text.h"
#include "window/controls/events.h"
#include "window/controls/file_dialogs.h"
#include "window/controls/make_form.h"
#include "window/controls/saving.h"
#include "window/controls/wrapping_row.h"
#include "window/system/file_name.h"

#include <QFileInfo>

#include <utility>

namespace varda::window {
namespace {

FileDialogs::Kind captureFiles() { return {QStringLiteral(".pcapng"), QStringLiteral("Log")}; }

} // namespace

RecordingsPanel::RecordingsPanel(RecordingPlayer& player, const BenchContext& context, QWidget* parent)
    : CompanionPart(parent), context_(context), player_(player), ui_(makeForm<Ui::RecordingsPanel>(this)) {
    WrappingRow::replace(ui_->recordingsPanelLayout, ui_->playRow);
    bind();
    refresh();
}

RecordingsPanel::~RecordingsPanel() = default;

void RecordingsPanel::bind() {
    Events& events = context_.events;
    events.click(ui_->openRecording, [this] { chooseCapture(&RecordingsPanel::open); });
    events.click(ui_->compareRecording, [this] { chooseCapture(&RecordingsPanel::compareWith); });
    events.click(ui_->playRecording, [this] { player_.play(ui_->playSpeed->value()); });
    events.click(ui_->stepRecording, [this] { player_.step(); });
    events.click(ui_->stopRecording, [this] { player_.stop(); });
    events.click(ui_->rewindRecording, [this] { rewind(); });
    connect(&player_, &RecordingPlayer::wentOn, this, &RecordingsPanel::refresh);
}

void RecordingsPanel::chooseCapture(void (RecordingsPanel::*take)(const QString& path)) {
    const FileDialogs::Chosen chosen = [this, take](const QString& path) { (this->*take)(path); };
    context_.files.chooseToOpen(captureFiles(), context_.events.guarded(chosen));
}

/// Nothing where it is no capture, which has been told.
std::optional<Recording> RecordingsPanel::read(const QString& path) {
    try {
        ReadCapture read = loadCapture(fileName(path));
        cut_ = read.isCut ? tr("The file ends within a packet; those before it were read.") : QString();
        if (read.incomplete > 0) {
            cut_ = tr("%1 left out, of which not all bytes were kept.")
                       .arg(countedText(read.incomplete, "packet"));
        }
        return std::move(read.recording);
    } catch (const RuntimeError& error) {
        context_.talk.tell(error);
        return std::nullopt;
    }
}

void RecordingsPanel::open(const QString& path) {
    if (std::optional<Recording> opened = read(path)) {
        recording_ = std::move(*opened);
        name_ = QFileInfo(path).fileName();
        ui_->comparison->clear();
        const QString held = tr("%1: %2. %3 to play.")
                                 .arg(name_, QString::fromStdString(inWords(sizeOf(recording_))),
                                      countedText(playedFrames(recording_).size(), "frame"));
        ui_->recordingState->setText(cut_.isEmpty() ? held : held + QLatin1Char(' ') + cut_);
        rewind();
    }
}

void RecordingsPanel::rewind() { player_.load(playedFrames(recording_)); }

void RecordingsPanel::compareWith(const QString& path) {
    if (const std::optional<Recording> other = read(path)) {
        const QString words = QString::fromStdString(inWords(compare(recording_, *other)));
        ui_->comparison->setPlainText(tr("%1 and %2").arg(name_, QFileInfo(path).fileName()) +
                                      QLatin1Char('\n') + words +
                                      (cut_.isEmpty() ? QString() : QLatin1Char('\n') + cut_));
    }
}

void RecordingsPanel::refresh() {
    const PlayerProgress progress = player_.progress();
    const bool hasFrames = progress.frames > 0;
    const bool mayGoOn = hasFrames && !player_.isAtEnd() && !player_.isPlaying();
    ui_->playRecording->setEnabled(mayGoOn);
    ui_->stepRecording->setEnabled(mayGoOn);
    ui_->stopRecording->setEnabled(player_.hasPort());
    ui_->rewindRecording->setEnabled(progress.played > 0);
    ui_->compareRecording->setEnabled(!name_.isEmpty());
    ui_->playSpeed->setEnabled(!player_.isPlaying());
    ui_->playProgress->setMaximum(hasFrames ? static_cast<int>(progress.frames) : 1);
    ui_->playProgress->setValue(static_cast<int>(progress.played));
    ui_->playState->setText(hasFrames ? QString::fromStdString(inWords(progress)) + QLatin1Char('.')
                                      : QString());
}

} // namespace varda::window
