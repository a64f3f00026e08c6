// The view options and what each of them sets.
#include "scene/viewoptions.h"

#include "tests/golden.h"

namespace orv {
namespace {

struct viewoptionstest : sessiontest {};

TEST_F(viewoptionstest, BoxesAndTheirSettings) {
    const auto settings = [] {
        std::string all;
        for (const char* mark :
             {"AutRed", "Vroom", "Vsource", "CamVrec", "Vbln", "BLNview", "Vaxes", "Post", "Vrays"})
            all += ischecked(mark) ? 'x' : '.';
        const sessionstate& s = SessionState;
        return all + (s.autoRedraw != 0 ? 'x' : '.') + (s.shrinkFaces ? 'x' : '.') +
               (s.dxfEnabled != 0 ? 'x' : '.') + (isenabled("DXFIN") ? 'x' : '.') +
               (isenabled("DXFOUT") ? 'x' : '.');
    };
    SessionState.autoRedraw = on;
    std::vector<std::string> told = {settings() + " at the start, with DXFIN though its box is not ticked"};
    for (const std::string_view box : viewboxes) clickviewbox(box, false);
    told.push_back(settings() + " " + platform::gettext("Redisplay"));
    for (const std::string_view box : viewboxes) {
        clickviewbox(box, true);
        told.push_back(settings() + " " + std::string(box) + (viewbox(box) ? "" : " is not shown"));
        clickviewbox(box, false);
    }
    expectgolden("viewoptions.txt", told);
    EXPECT_TRUE(picture.lines.empty()) << "nothing is drawn";
}

TEST_F(viewoptionstest, ColoursAndPlanes) {
    for (const viewcolour& each : viewcolours) {
        SessionState.*each.colour = 77;
        scripted::expectcolour(scripted::cancelled);
        clickviewcolour(each);
        EXPECT_EQ(SessionState.*each.colour, 77);
        scripted::expectcolour(rgb(1, 2, 3));
        clickviewcolour(each);
        EXPECT_EQ(SessionState.*each.colour, 0x030201);
    }
    EXPECT_EQ(scripted::countcalls("colour 77"), 12U);

    sessionstate& s = SessionState;
    s.gridReady = s.contourReady = -1;
    clickviewplane(planechoice::XY); // as it is
    EXPECT_EQ(s.gridReady, -1);
    clickviewplane(planechoice::XZ);
    EXPECT_EQ(s.viewPlane, planechoice::XZ);
    EXPECT_TRUE(scripted::ischosen("XZ"));
    EXPECT_EQ(s.gridReady + s.contourReady, 0) << "the maps are of the former plane";
    EXPECT_TRUE(picture.lines.empty());
}

} // namespace
} // namespace orv
