#include "core/shell/layout.h"

#include <algorithm>

namespace veltrona {

namespace {
constexpr float heightReserve = 1000;
constexpr float bottomShortfall = 450;
constexpr float frame2WidthReserve = 310;
constexpr float frame3WidthReserve = 230;
constexpr float frameGapAcross = 70;
constexpr float frameGapDown = 10;
constexpr float labelGap = 75;
constexpr float gridWidthReserve = 210;
constexpr float treeWidthReserve = 200;
constexpr float gridHeightReserve = 30;
constexpr float treeHeightReserve = 150;
constexpr float chartHeightReserve = 350;
constexpr float sideColumn = 2600;
constexpr float chartToSideColumn = 150;

constexpr float toolBarOfDesign = designed("Toolbar1").height;
// With the design's tool bar the frames end at H - status bar - 840, so that border, title bar and
// menu bar may take 840 of the height; across, Frame2 ends at W - 180 and Frame3 at W - 170.
constexpr float chromeHeightAllowed =
    heightReserve + bottomShortfall - frameGapDown - toolBarOfDesign;
constexpr float chromeWidthAllowed = 170;

float beyond(float length, float allowed) {
    return std::max(0.F, length - allowed);
}

void arrangeFrames(WindowLayout &layout, float w, float h, const WindowSizes &sizes) {
    layout.Frame1.height = (h - sizes.statusBarHeight - heightReserve) / 2;
    layout.Frame2.height = layout.Frame1.height;
    layout.Frame3.height = layout.Frame1.height - bottomShortfall;
    layout.Frame1.width = w / 4;
    layout.Frame2.width = (w / 4) * 3 - frame2WidthReserve;
    layout.Frame3.width = w - frame3WidthReserve;
    layout.Frame2.left = layout.Frame1.width + layout.Frame1.left + frameGapAcross;
    layout.Frame3.top = layout.Frame1.height + layout.Frame1.top + frameGapDown;
}

float besideLabel(std::string_view label) {
    const TwipRect place = designed(label);
    return place.width + place.left + labelGap;
}

void arrangeContents(WindowLayout &layout) {
    layout.dtpStart.left = besideLabel("lblStart");
    layout.dtpEnd.left = besideLabel("lblEnd");
    layout.cboRange.left = besideLabel("lblRange");
    layout.flxStat.width = layout.Frame2.width - gridWidthReserve;
    layout.treeList.width = layout.Frame1.width - treeWidthReserve;
    layout.flxStat.height = layout.Frame2.height - layout.flxStat.top - gridHeightReserve;
    layout.treeList.height = layout.Frame1.height - layout.treeList.top - treeHeightReserve;
    layout.mscMain.height = layout.Frame3.height - chartHeightReserve;
    layout.mscMain.width = layout.Frame3.width - sideColumn;
    layout.lblLeft.left = layout.mscMain.width + layout.mscMain.left + chartToSideColumn;
    layout.cboLeft.left = layout.lblLeft.left;
    layout.lblGroup.left = layout.lblLeft.left;
    layout.cboGroup.left = layout.lblLeft.left;
}
} // namespace

WindowLayout arrangeWindow(const WindowSizes &sizes) {
    WindowLayout layout;
    const float toolBarSurplus = beyond(sizes.toolBarHeight, toolBarOfDesign);
    layout.Frame1.top += toolBarSurplus;
    layout.Frame2.top += toolBarSurplus;

    const float w =
        std::max(sizes.width, minimumWidth) - beyond(sizes.chromeWidth, chromeWidthAllowed);
    const float h = std::max(sizes.height, minimumHeight) - toolBarSurplus -
                    beyond(sizes.chromeHeight, chromeHeightAllowed);
    arrangeFrames(layout, w, h, sizes);
    arrangeContents(layout);
    return layout;
}

} // namespace veltrona
