#pragma once

#include <QRect>
#include <QScrollBar>
#include <QTimer>

class QAbstractScrollArea;

namespace varda::window {

/// A scroll bar that is painted again only where it looks other than before. A list that grows by a line
/// moves its slider by a fraction of a pixel, and painting a scroll bar costs more than painting the line.
/// Where it only stays at the end of such a list it is painted once a second.
class SteadyScrollBar : public QScrollBar {
    Q_OBJECT

public:
    explicit SteadyScrollBar(Qt::Orientation orientation, QWidget* parent = nullptr);

protected:
    void sliderChange(SliderChange change) override;
    void paintEvent(QPaintEvent* event) override;

private:
    /// What of its numbers can be seen.
    struct Look {
        QRect slider;
        bool isAtBegin = false;
        bool isAtEnd = false;

        friend bool operator==(const Look&, const Look&) = default;
    };

    Look look() const;
    void paintIfOther();

    Look painted_;
    bool isAsked_ = false; ///< whether it looks other, once the changes under way are done
    QTimer following_;     ///< until it is painted at the end that has moved
};

/// Gives both to a list that grows. It lays itself out when one of them comes or goes, and no longer for each
/// line, which paints both whatever they look like.
void giveSteadyScrollBars(QAbstractScrollArea* list);

} // namespace varda::window
