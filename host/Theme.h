#pragma once

#include <QPalette>

// The few colours that code needs to know; all others stand in resources/dark.qss.
namespace quillmark::lumen_wall::theme {

constexpr const char* kAccent = "#3d8bfd";
constexpr const char* kCell = "#0c0f12";

// What the style sheet leaves over. Texts are coloured here and not there, since a style sheet would colour the hints
// in empty fields like what is written in them.
inline QPalette palette()
{
    const QColor text("#c9d1d9"), faint("#59636d"), window("#14181d");
    QPalette palette(QColor("#1f262d"), window);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText}) {
        palette.setColor(role, text);
        palette.setColor(QPalette::Disabled, role, faint);
    }
    palette.setColor(QPalette::PlaceholderText, faint);
    palette.setColor(QPalette::Base, QColor("#0f1317"));
    palette.setColor(QPalette::AlternateBase, QColor("#12171c"));
    palette.setColor(QPalette::Highlight, QColor("#2c5f9e"));
    palette.setColor(QPalette::HighlightedText, QColor("#ffffff"));
    return palette;
}

} // namespace quillmark::lumen_wall::theme
