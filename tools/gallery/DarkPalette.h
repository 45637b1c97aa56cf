#pragma once

#include <initializer_list>

#include <QPalette>

namespace zth {

/// A desktop's dark colours, for pictures and tests. The light colours are those of the style.
inline QPalette DarkPalette() {
  QPalette palette;
  const auto set = [&palette](std::initializer_list<QPalette::ColorRole> roles, const char* colour) {
    for (const QPalette::ColorRole role : roles) palette.setColor(role, QColor(colour));
  };
  set({QPalette::Window, QPalette::AlternateBase}, "#2d2d30");
  set({QPalette::Base, QPalette::ToolTipBase}, "#1e1e1e");
  set({QPalette::Button}, "#3c3c40");
  set({QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText}, "#f0f0f0");
  set({QPalette::BrightText, QPalette::HighlightedText}, "#ffffff");
  set({QPalette::Highlight}, "#2a82da");
  set({QPalette::Link}, "#5aa0f0");
  set({QPalette::PlaceholderText, QPalette::Mid}, "#808080");
  set({QPalette::Dark, QPalette::Shadow}, "#202022");
  set({QPalette::Light, QPalette::Midlight}, "#5a5a5e");
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
    palette.setColor(QPalette::Disabled, role, QColor("#8a8a8a"));
  }
  return palette;
}

}  // namespace zth
