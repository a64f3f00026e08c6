// Boxes and dialogs, printing, the region, events that have no signal, and the errors that nobody trapped.
#include "windowtest.h"

#include "platform/qt/boundary.h"
#include "platform/qt/elidedlabel.h"
#include "tests/failures.h"

#include <QClipboard>
#include <QFileDialog>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QTreeView>

#include <cstdio>
#include <fstream>
#include <new>

namespace orv {
namespace {

using platform::answer;
using platform::buttons;

struct platformtest : windowtest {
    static QString proposed(const QWidget& dialog) {
        return dialog.findChild<QLineEdit*>("fileNameEdit")->text();
    }

    // Whether the dialog lists these names, once its thread has read the directory.
    static bool lists(const QWidget& dialog, const QStringList& wanted) {
        const auto* view = dialog.findChild<QTreeView*>("treeView");
        return QTest::qWaitFor([&] {
            QStringList names;
            for (int row = 0; row < view->model()->rowCount(view->rootIndex()); ++row)
                names += view->model()->index(row, 0, view->rootIndex()).data().toString();
            return names == wanted;
        });
    }
};

// A desktop that has a program for MIME archives, one that has none, and one that cannot be asked.
TEST_F(platformtest, DocumentsHaveAnOpenerWhereTheDesktopNamesOne) {
    const QByteArray formerpath = qgetenv("PATH");
    const QString tool = directory.filePath("xdg-mime");
    qputenv("PATH", directory.path().toUtf8());
    EXPECT_FALSE(platform::hasopener("help.mht"));
    std::ofstream(tool.toStdString()) << "#!/bin/sh\n[ \"$1 $2 $3\" = \"query default "
                                         "application/x-mimearchive\" ] && echo viewer.desktop\n";
    QFile::setPermissions(tool, QFile::ReadOwner | QFile::ExeOwner);
    EXPECT_TRUE(platform::hasopener("help.mht"));
    EXPECT_FALSE(platform::hasopener("help.html"));
    qputenv("PATH", formerpath);
}

TEST_F(platformtest, BoxesShowWhatTheyAreGiven) {
    answers::expectbox("Warning !", answer::yes, [](QWidget& window) {
        const auto& box = dynamic_cast<QMessageBox&>(window);
        EXPECT_EQ(box.text(), QString::fromUtf8("<b>\xC3\xA9</b>")) << "no markup, and the code page";
        EXPECT_EQ(box.textFormat(), Qt::PlainText);
        EXPECT_EQ(box.standardButtons(), QMessageBox::Yes | QMessageBox::No);
        EXPECT_EQ(box.defaultButton(), box.button(QMessageBox::No));
    });
    EXPECT_EQ(
        platform::messagebox("Warning !", "<b>\xE9</b>", buttons::yesno, platform::icon::stop, answer::no),
        answer::yes);

    platform::cliptext("na\xEFve\tx");
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QString::fromUtf8("na\xC3\xAFve\tx"));

    // A word that is broken to fit is copied whole.
    const std::string path(200, 'x');
    answers::expectbox("xxx", answer::ok, [](QWidget& window) {
        auto& label = *window.findChild<QLabel*>("qt_msgbox_label");
        label.setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
        label.setSelection(0, static_cast<int>(label.text().size()));
        QTest::keyClick(&label, Qt::Key_C, Qt::ControlModifier);
    });
    platform::messagebox("Full", path, buttons::ok, platform::icon::none, answer::ok);
    EXPECT_EQ(QGuiApplication::clipboard()->text().toStdString(), path);
    EXPECT_EQ(tooltipof("a/b.ray"), "a/b.ray");
    EXPECT_EQ(tooltipof("a/<b>.ray"), "<span style='white-space: pre'>a/&lt;b&gt;.ray</span>");

    // Closing a question is a No, whatever its default button.
    answers::expectwindow("", [](QWidget& window) { QTest::keyClick(&window, Qt::Key_Escape); });
    EXPECT_EQ(platform::messagebox("Q", "?", buttons::yesno, platform::icon::question, answer::yes),
              answer::no);
}

TEST_F(platformtest, OpenDialogsFilterInAnyLetterCase) {
    for (const char* name : {"a.RAY", "b.ray", "c.Ray", "d.txt"}) std::ofstream(inside(name)) << "x";
    const platform::filerequest rooms{"Rooms", "Orvcad Geom.Files (*.ray)|*.ray", "*.RAY", inside("")};
    answers::expectfile("Rooms", inside("c.Ray"), [](QWidget& dialog) {
        EXPECT_TRUE(lists(dialog, {"a.RAY", "b.ray", "c.Ray"}));
        EXPECT_EQ(proposed(dialog), "") << "a pattern is no name";
    });
    EXPECT_EQ(platform::askopenfile(rooms), inside("c.Ray"));
    answers::expectfile("Rooms", "");
    EXPECT_EQ(kindof([&] { platform::askopenfile(rooms); }), errorkind::cancelled);
}

TEST_F(platformtest, SaveDialogsTakePathsAsBytes) {
    const std::string folder = inside("S\xC3\xA4le"), path = folder + "/\xE2\x82\xAC.ray";
    std::filesystem::create_directory(folder);
    answers::expectfile("Rooms", folder + "/new", [&](QWidget& dialog) {
        EXPECT_EQ(proposed(dialog).toStdString(), "\xE2\x82\xAC.ray");
        EXPECT_EQ(dynamic_cast<QFileDialog&>(dialog).directory().path().toStdString(), folder);
    });
    EXPECT_EQ(platform::asksavefile({"Rooms", "R|*.ray", path, inside("")}), folder + "/new.ray");
    EXPECT_EQ(std::filesystem::current_path(), inside("")) << "the directory stays";
}

TEST_F(platformtest, PrintsThePictureToAFile) {
    openroom();
    choose("Redraw");
    const QImage before = picturecontents(MainWindow->picture).copy();
    answers::expectprint(inside("page.pdf"));
    choose("Cprint");
    EXPECT_GT(filesize(inside("page.pdf")), 2000U);
    EXPECT_EQ(picturecontents(MainWindow->picture), before);
    answers::expectprint(inside("missing/page.pdf"));
    answers::expectbox("cannot be written", answer::ok);
    choose("Cprint");
}

TEST_F(platformtest, UntrappedErrorsAreToldAndEndTheProgram) {
    const auto told = [](const std::string& fragment) {
        answers::expectbox(fragment, answer::ok, [](QWidget&) { std::fputs("told", stderr); });
    };
    const auto exhausted = [&] {
        told("memory");
        enter([] { throw std::bad_alloc(); });
    };
    EXPECT_EXIT(exhausted(), testing::ExitedWithCode(1), "told");
    enter([] { throw runtimeerror{errorkind::cancelled, "Cancelled"}; }); // ends the command alone

    std::ofstream(inside("bad.ray")) << "EntityList\r\n Wall\r\n"
                                        "  Face 0 1 4  0 0 0  4 0 0  4 3 0  0 3 0\r\n"
                                        "  Face 0 1 4  none";
    const auto broken = [&] {
        answers::expectfile("Load a Orvanta CAD File", inside("bad.ray"));
        told("bad.ray, line 4");
        choose("FLoad");
    };
    EXPECT_EXIT(broken(), testing::ExitedWithCode(1), "told");
}

} // namespace
} // namespace orv
