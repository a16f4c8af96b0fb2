#pragma once

#include "core/insight/link_statistics.h"

#include <QWidget>

#include <vector>

namespace varda::window {

/// The response times of the last ten minutes, oldest left, with marks of different shapes for silences and
/// dropped answers.
class ResponsePlot : public QWidget {
    Q_OBJECT

public:
    explicit ResponsePlot(QWidget* parent = nullptr);

    /// Both outlive the plot.
    void plot(const LinkStatistics& statistics, const Clock& clock);
    /// Draws how things are now.
    void refresh();

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QRect plotArea() const;
    double highest() const;
    void drawAxes(QPainter& painter, double top) const;
    void drawSamples(QPainter& painter, double top) const;
    void drawMarks(QPainter& painter) const;
    void drawLegend(QPainter& painter) const;
    int placeOf(qint64 millisecondsAgo) const;
    int placeOf(const LinkStatistics::Sample& sample) const;

    const LinkStatistics* statistics_ = nullptr;
    const Clock* clock_ = nullptr;
    Clock::Time now_;                             ///< when it was drawn anew last
    std::vector<LinkStatistics::Sample> samples_; ///< of the time until then
};

} // namespace varda::window
