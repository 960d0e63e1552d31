// How the main window shares out its space: the design table, and the resize rules as a function
// from sizes to rectangles. All lengths are in twips as 32-bit floats; places count from the corner
// of the container, those of the window from below its menu bar.
#pragma once

#include "core/design/designedControl.h"

namespace veltrona {

inline constexpr float designInnerWidth = 12855;
inline constexpr float designInnerHeight = 9675;
inline constexpr float minimumWidth = 11000;
inline constexpr float minimumHeight = 6500;

// clang-format off
inline constexpr std::array mainWindowDesign = {
    DesignedControl{"Toolbar1", {   0,    0, 12855,  600}},
    DesignedControl{"sbMain",   {   0, 9330, 12855,  345}},
    DesignedControl{"Frame1",   {  60,  600,  3615, 3375}},
    DesignedControl{"treeList", { 120,  240,  1935, 1335}},
    DesignedControl{"Frame2",   {3720,  600,  9135, 3375}},
    designedIn(measuredLabels, "lblStart"),
    DesignedControl{"dtpStart", {1200,  240,  1335,  315}},
    designedIn(measuredLabels, "lblEnd"),
    DesignedControl{"dtpEnd",   {3600,  240,  1335,  315}},
    designedIn(measuredLabels, "lblRange"),
    DesignedControl{"cboRange", {6240,  240,  1455,  315}},
    designedIn(measuredLabels, "lblSum"),
    DesignedControl{"flxStat",  { 120,  900,  7815, 1095}},
    DesignedControl{"Frame3",   {  60, 4080, 12855, 5175}},
    DesignedControl{"mscMain",  { 120,  240,  8895, 4815}},
    DesignedControl{"lblLeft",  {9165,  360,  1815,  195}, "Shown Values (bar):"},
    DesignedControl{"cboLeft",  {9165,  600,  2055,  315}},
    DesignedControl{"lblGroup", {9165, 1080,  1815,  195}, "Group by:"},
    DesignedControl{"cboGroup", {9165, 1320,  2055,  315}},
    DesignedControl{"picChart", {9165, 1800,  2175, 2415}},
};
// clang-format on

/// The place of a control in the design table.
constexpr TwipRect designed(std::string_view name) {
    return designedIn(mainWindowDesign, name).place;
}

struct WindowSizes {
    /// Outer size, border and title bar included.
    float width = 0;
    float height = 0;
    float statusBarHeight = designed("sbMain").height;
    float toolBarHeight = designed("Toolbar1").height;
    /// What border, title bar and menu bar take of the outer size.
    float chromeWidth = 0;
    float chromeHeight = 0;
};

struct WindowLayout {
    TwipRect Frame1 = designed("Frame1");
    TwipRect treeList = designed("treeList");
    TwipRect Frame2 = designed("Frame2");
    TwipRect dtpStart = designed("dtpStart");
    TwipRect dtpEnd = designed("dtpEnd");
    TwipRect cboRange = designed("cboRange");
    TwipRect flxStat = designed("flxStat");
    TwipRect Frame3 = designed("Frame3");
    TwipRect mscMain = designed("mscMain");
    TwipRect lblLeft = designed("lblLeft");
    TwipRect cboLeft = designed("cboLeft");
    TwipRect lblGroup = designed("lblGroup");
    TwipRect cboGroup = designed("cboGroup");
};

/// The rules. `sizes` of less than the minimum are taken as the minimum. Chrome or a tool bar of
/// more than the design allows for is taken from the space that the frames share, so that no frame
/// slides under the tool bar, the status bar or the right border.
WindowLayout arrangeWindow(const WindowSizes &sizes);

} // namespace veltrona
