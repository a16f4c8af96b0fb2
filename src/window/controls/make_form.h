#pragma once

#include <memory>

namespace varda::window {

/// Lays a window or a page out by its form, ready for the members that are made after it.
template <typename Form, typename Window>
std::unique_ptr<Form> makeForm(Window* window) {
    auto form = std::make_unique<Form>();
    form->setupUi(window);
    return form;
}

} // namespace varda::window
