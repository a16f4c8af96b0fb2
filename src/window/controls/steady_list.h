#pragma once

#include <QListView>

namespace varda::window {

/// A list that many lines come to. Of those that are there it paints again no more than it has to, and of its
/// scroll bars what looks other than before.
class SteadyList : public QListView {
    Q_OBJECT

public:
    explicit SteadyList(QWidget* parent = nullptr);

    /// Behind lines that were added.
    void showEnd();
    void doItemsLayout() override;
    void reset() override;

protected:
    void updateGeometries() override;
    void rowsInserted(const QModelIndex& parent, int first, int last) override;
    void rowsAboutToBeRemoved(const QModelIndex& parent, int first, int last) override;

private:
    /// Where its lines stand.
    struct Place {
        QSize size;
        QPoint scrolled;

        friend bool operator==(const Place&, const Place&) = default;
    };

    Place place() const;
    void layOutInSilence();

    // Since its end was shown last:
    int unchanged_ = 0; ///< lines that are the first as they were then
    Place shown_;       ///< where they stood then
};

} // namespace varda::window
