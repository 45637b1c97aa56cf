#pragma once

#include <utility>

#include <QString>

namespace zth::widgets {

/// A new widget with its `objectName`, by which tests, tools and assistive technology find it.
template <typename Widget, typename... Arguments>
Widget* Named(const QString& name, Arguments&&... arguments) {
  auto* widget = new Widget(std::forward<Arguments>(arguments)...);
  widget->setObjectName(name);
  return widget;
}

}  // namespace zth::widgets
