// The controls of a window as they were designed: the one table type of all windows. A window's
// design is an array of these; names are also the names of the widgets.
#pragma once

#include <array>
#include <span>
#include <stdexcept>
#include <string_view>

namespace veltrona {

/// Lengths of the design are in twips, 1,440 to the inch.
constexpr double twipsPerPixel = 15; // at 96 dots per inch

struct TwipRect {
    float left = 0;
    float top = 0;
    float width = 0;
    float height = 0;
    bool operator==(const TwipRect &) const = default;
};

struct DesignedControl {
    const char *name;
    TwipRect place;
    const char *caption = "";
};

using WindowDesign = std::span<const DesignedControl>;

constexpr const DesignedControl &designedIn(WindowDesign design, std::string_view name) {
    for (const DesignedControl &control : design)
        if (name == control.name)
            return control;
    throw std::out_of_range("no control of that name in the design");
}

/// The labels whose width in the designs is just that of their text. The scale of all windows is
/// such that these have room, and with them every other text.
// clang-format off
inline constexpr std::array measuredLabels = {
    DesignedControl{"lblStart", { 360, 300,  765, 195}, "Start Date:"},
    DesignedControl{"lblEnd",   {2760, 300,  720, 195}, "End Date:"},
    DesignedControl{"lblRange", {5160, 300,  915, 195}, "Date Range:"},
    DesignedControl{"lblSum",   { 360, 630, 1395, 195}, "Campaign Summary"},
    DesignedControl{"Label1",   { 240, 120, 3060, 195}, "Please wait while the XML file is importing..."},
};
// clang-format on

} // namespace veltrona
