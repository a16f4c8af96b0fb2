#include "window/insight/response_plot.h"

#include "window/controls/counted_text.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace varda::window {
namespace {

using std::chrono::duration_cast;
using std::chrono::milliseconds;

constexpr qint64 span = milliseconds(LinkStatistics::plotted).count();
constexpr int minutes = static_cast<int>(LinkStatistics::plotted.count());
constexpr int markSize = 7;

/// The next of 1, 2, 5, 10, 20 .. that holds a value.
double roundUp(double value) {
    const double decade = std::pow(10, std::floor(std::log10(std::max(value, 1.0))));
    for (const double step : {1.0, 2.0, 5.0}) {
        if (value <= step * decade) {
            return step * decade;
        }
    }
    return 10 * decade;
}

/// A triangle that points at its time: nothing came.
void drawSilence(QPainter& painter, const QPoint& foot) {
    QPainterPath triangle;
    triangle.moveTo(foot);
    triangle.lineTo(foot + QPoint(-markSize / 2, -markSize));
    triangle.lineTo(foot + QPoint(markSize / 2 + 1, -markSize));
    triangle.closeSubpath();
    painter.fillPath(triangle, painter.pen().color());
}

/// A cross: something came and was dropped.
void drawDrop(QPainter& painter, const QPoint& foot) {
    const QRect square(foot - QPoint(markSize / 2, markSize), QSize(markSize, markSize));
    painter.drawLine(square.topLeft(), square.bottomRight());
    painter.drawLine(square.topRight(), square.bottomLeft());
}

} // namespace

ResponsePlot::ResponsePlot(QWidget* parent) : QWidget(parent) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void ResponsePlot::plot(const LinkStatistics& statistics, const Clock& clock) {
    statistics_ = &statistics;
    clock_ = &clock;
    refresh();
}

/// Who does not see the picture hears its numbers.
void ResponsePlot::refresh() {
    now_ = clock_->now();
    samples_ = statistics_->samples(now_);
    const auto count = [this](Outcome outcome) {
        return static_cast<std::size_t>(
            std::ranges::count(samples_, outcome, &LinkStatistics::Sample::outcome));
    };
    setAccessibleDescription(tr("The last ten minutes: %1, the slowest after %2 ms, %3, %4 dropped")
                                 .arg(countedText(count(Outcome::Answered), "answer"))
                                 .arg(highest(), 0, 'f', 1)
                                 .arg(countedText(count(Outcome::Silent), "silence"))
                                 .arg(count(Outcome::WrongLength)));
    setToolTip(accessibleDescription());
    update();
}

QSize ResponsePlot::sizeHint() const { return {480, 12 * fontMetrics().height()}; }

QSize ResponsePlot::minimumSizeHint() const { return {160, 7 * fontMetrics().height()}; }

QRect ResponsePlot::plotArea() const {
    const int letter = fontMetrics().height();
    const int left = fontMetrics().horizontalAdvance(QStringLiteral("00000 ms "));
    return rect().adjusted(left, letter + letter / 2, -letter, -(letter + letter / 2));
}

double ResponsePlot::highest() const {
    double most = 0;
    for (const LinkStatistics::Sample& sample : samples_) {
        most = std::max(most, sample.milliseconds);
    }
    return most;
}

int ResponsePlot::placeOf(qint64 millisecondsAgo) const {
    const QRect area = plotArea();
    return area.right() - static_cast<int>(millisecondsAgo * area.width() / span);
}

int ResponsePlot::placeOf(const LinkStatistics::Sample& sample) const {
    return placeOf(duration_cast<milliseconds>(now_ - sample.time).count());
}

void ResponsePlot::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(rect(), palette().base());
    if (statistics_ == nullptr || plotArea().width() <= 0 || plotArea().height() <= 0) {
        return;
    }
    const double top = roundUp(highest());
    drawAxes(painter, top);
    drawSamples(painter, top);
    drawMarks(painter);
    drawLegend(painter);
}

void ResponsePlot::drawAxes(QPainter& painter, double top) const {
    const QRect area = plotArea();
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawRect(area);
    painter.drawLine(area.left(), area.center().y(), area.right(), area.center().y());
    painter.setPen(palette().color(QPalette::Text));
    const int letter = fontMetrics().height();
    const auto scale = [&](int y, double value) {
        const QRect place(0, y - letter / 2, area.left() - letter / 3, letter);
        painter.drawText(place, Qt::AlignRight | Qt::AlignVCenter, tr("%1 ms").arg(value));
    };
    scale(area.top(), top);
    scale(area.center().y(), top / 2);
    scale(area.bottom(), 0);
    for (const int minute : {minutes, minutes / 2, 0}) {
        const int width = fontMetrics().horizontalAdvance(QStringLiteral("- 10 min"));
        const int centre = placeOf(minute * qint64{60'000});
        const int left = std::clamp(centre - width / 2, area.left(), this->width() - width);
        const QRect place(left, area.bottom() + letter / 4, width, letter);
        painter.drawText(place, Qt::AlignCenter, minute == 0 ? tr("now") : tr("-%1 min").arg(minute));
    }
}

/// A stroke for each column of pixels, from its shortest to its longest response: of 60,000 samples no more
/// is to be seen.
void ResponsePlot::drawSamples(QPainter& painter, double top) const {
    const QRect area = plotArea();
    painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
    const auto height = [&](double value) { return area.bottom() - value / top * area.height(); };
    int column = -1;
    double least = 0;
    double most = 0;
    const auto draw = [&] {
        if (column >= area.left()) {
            painter.drawLine(QPointF(column, height(least) + 1), QPointF(column, height(most)));
        }
    };
    for (const LinkStatistics::Sample& sample : samples_) {
        if (sample.outcome != Outcome::Answered) {
            continue;
        }
        const int place = placeOf(sample);
        if (place != column) {
            draw();
            column = place;
            least = most = sample.milliseconds;
        }
        least = std::min(least, sample.milliseconds);
        most = std::max(most, sample.milliseconds);
    }
    draw();
}

void ResponsePlot::drawMarks(QPainter& painter) const {
    const QRect area = plotArea();
    painter.setPen(QPen(palette().color(QPalette::Text), 1.5));
    for (const LinkStatistics::Sample& sample : samples_) {
        const QPoint foot(placeOf(sample), area.bottom());
        if (foot.x() < area.left()) {
            continue;
        }
        if (sample.outcome == Outcome::Silent) {
            drawSilence(painter, foot);
        } else if (sample.outcome == Outcome::WrongLength) {
            drawDrop(painter, foot);
        }
    }
}

void ResponsePlot::drawLegend(QPainter& painter) const {
    const int letter = fontMetrics().height();
    const int foot = letter / 2 + letter / 3 + markSize / 2;
    int left = plotArea().left() + letter;
    const auto name = [&](const QString& text) {
        left += letter;
        painter.drawText(QPoint(left, letter), text);
        left += fontMetrics().horizontalAdvance(text) + letter;
    };
    drawSilence(painter, QPoint(left + letter / 3, foot));
    name(tr("silence"));
    drawDrop(painter, QPoint(left + letter / 3, foot));
    name(tr("dropped"));
    painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
    painter.drawLine(left + letter / 3, foot - markSize, left + letter / 3, foot);
    painter.setPen(palette().color(QPalette::Text));
    name(tr("response"));
}

} // namespace varda::window
