#pragma once

// The few colours that code needs to know; all others stand in resources/dark.qss.
namespace quillmark::lumen_wall::theme {

constexpr const char* kAccent = "#3d8bfd";
constexpr const char* kCell = "#0c0f12";

} // namespace quillmark::lumen_wall::theme
