// The window "Impulse Response", alone and beside the scene: what pointer and keys reach, and that marks and
// paths come and go without a trace.
#include "windowtest.h"

#include "response/raypathdisplay.h"
#include "response/responseplot.h"
#include "results/resultreader.h"

#include <QComboBox>

namespace orv {
namespace {

struct openresponse : windowview {
    QWidget& plot() const { return control("Picture1"); }
    QImage image() const { return plot().grab().toImage(); }
    QPoint at(double share) const {
        return QPoint(static_cast<int>(share * plot().width()), plot().height() / 2);
    }
    void move(double share) const {
        QTest::mouseEvent(QTest::MouseMove, &plot(), Qt::LeftButton, {}, at(share));
    }
};

struct responsewindowtest : windowtest {
    responsewindowtest() {
        ResponsePlot = responseplot{};
        openroom();
        std::string paths;
        for (const char* time : {".05", ".1", ".15", ".2"})
            paths += std::string("3,1,") + time +
                     ",1E5,1E5,1E5,1E5,1E5,1E5,1E5,1E5,1E5,1E5,2,7,1,2,3,30,5,6,7\r\n";
        replacefile(inside("box.@01"), paths);
        loadresult(inside("box._01"));
        enablecommand("ViewImpulse", true);
        form().resize(1000, 700);
        choose("Redraw");
        QTest::qWait(1);
    }

    void open(const std::function<void(const openresponse&)>& act) const {
        within("ImpulseResponse", [act](const windowview& response) { act({response}); });
        choose("ViewImpulse");
    }
    QImage scene() const { return picturecontents(MainWindow->picture).copy(); }
};

TEST_F(responsewindowtest, marksLeaveEveryPixelAsItWas) {
    open([](const openresponse& response) {
        response.click("schlabel");
        const QImage clean = response.image();
        const double places[] = {0.3, 0.62, 0.051, 0.95};
        for (const double place : places) {
            QTest::mouseClick(&response.plot(), Qt::LeftButton, {}, response.at(place));
            EXPECT_NE(response.image(), clean);
        }
        // A drag that goes out and comes back zooms nothing.
        QTest::mousePress(&response.plot(), Qt::LeftButton, {}, response.at(0.5));
        for (const double place : places) response.move(place);
        response.move(0.501);
        QTest::mouseRelease(&response.plot(), Qt::LeftButton, {}, response.at(0.501));
        QTest::mouseClick(&response.plot(), Qt::LeftButton, {}, response.at(0)); // back to the start of time
        EXPECT_EQ(response.image(), clean);
    });
}

TEST_F(responsewindowtest, keysListsAndZoomReachThePlot) {
    open([](const openresponse& response) {
        auto& list = response.control<QComboBox>("RecNo");
        EXPECT_EQ(list.count(), 21);
        EXPECT_EQ(list.currentText(), "Rec.1");
        EXPECT_EQ(response.control<QComboBox>("FreqNo").currentText(), "1000");
        EXPECT_FALSE(response.shown("PathN"));
        auto& time = response.control<QLineEdit>("Xtext");
        response.type("Xtext", ".25");
        QTest::keyClick(&time, Qt::Key_Return);
        EXPECT_EQ(time.text(), "0.25");
        QTest::keyClick(&list, Qt::Key_Down); // the cursor's, not the list's
        EXPECT_EQ(time.text(), "0.24");
        EXPECT_EQ(list.currentIndex(), 1);

        QTest::mousePress(&response.plot(), Qt::LeftButton, {}, response.at(0.2));
        response.move(0.6);
        QTest::mouseRelease(&response.plot(), Qt::LeftButton, {}, response.at(0.6));
        EXPECT_GT(SessionState.viewStart, 0.0F);
        QTest::keyClick(&response.control("schlabel"), Qt::Key_Escape);
        EXPECT_EQ(SessionState.viewStart, 0.0F);
        EXPECT_TRUE(response.window.isVisible());

        response.expectroom({"Picture1", "RecNo", "FreqNo", "Xtext", "schlabel", "PathLenght"});
        EXPECT_EQ(response.image().size(), response.plot().size() * response.plot().devicePixelRatioF());
    });
    open([](const openresponse&) {}); // a second time
}

TEST_F(responsewindowtest, pathsComeAndGoInTheScene) {
    for (const char* view : {"Redraw", "CamRedr2D"}) {
        choose(view);
        const QImage before = scene();
        choose("viewraypaths");
        QWidget* window = nullptr;
        for (QWidget* each : QApplication::topLevelWidgets())
            if (each->objectName() == "ImpulseResponse" && each->isVisible()) window = each;
        ASSERT_NE(window, nullptr);
        const openresponse response{{*window}};
        EXPECT_EQ(scene(), before) << "receiver 1 has no paths";
        choosereceiver(3);
        platform::updatewindow(responsewindowname);
        enablecommand("ExportWAV", true);
        within("WavExport", [](const windowview& dialog) { // has a list of the same name
            EXPECT_EQ(dialog.control<QComboBox>("RecNo").itemText(0), " 1");
        });
        choose("ExportWAV");
        EXPECT_EQ(response.control<QComboBox>("RecNo").currentText(), "Rec.3");
        const QImage first = scene();
        EXPECT_NE(first, before);
        QTest::keyClick(&response.plot(), Qt::Key_Right);
        EXPECT_NE(response.text("Xtext"), "0.05");
        QTest::keyClick(&response.plot(), Qt::Key_End);
        QTest::keyClick(&response.plot(), Qt::Key_Home);
        EXPECT_EQ(scene(), first);
        // Clicks in the scene redraw it, with the path.
        QTest::mouseClick(MainWindow->picturewidget, Qt::LeftButton, {}, QPoint(1, 1));
        choosereceiver(3);
        EXPECT_EQ(scene(), first);
        if (view == std::string("Redraw"))
            window->close();
        else
            choose("viewraypaths");
        EXPECT_FALSE(raypathsshown());
        EXPECT_TRUE(action("ViewImpulse").isEnabled());
        EXPECT_EQ(scene(), before);
        QTest::qWait(1);
    }
    choose("viewraypaths");
    loadresult(inside("box._01")); // ends what the window showed
    EXPECT_FALSE(raypathsshown());
    choose("viewraypaths");
    form().close();
}

} // namespace
} // namespace orv
