#pragma once

#include <QListView>

namespace varda::window {

/// A list that many lines come to, with scroll bars that are painted where they look other than before.
class SteadyList : public QListView {
    Q_OBJECT

public:
    explicit SteadyList(QWidget* parent = nullptr);

    /// Behind lines that were added.
    void showEnd();
    void doItemsLayout() override;

protected:
    void updateGeometries() override;
};

} // namespace varda::window
