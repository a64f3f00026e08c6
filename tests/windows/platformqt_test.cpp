// Boxes and dialogs, printing, the region, events that have no signal, and the errors that nobody trapped.
#include "windowtest.h"

#include "platform/qt/boundary.h"
#include "scene/drawsurface.h"

#include <QClipboard>
#include <QComboBox>
#include <QFileDialog>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QTreeView>

#include <cstdio>
#include <fstream>
#include <new>
#include <optional>

namespace orv {
namespace {

using platform::answer;
using platform::buttons;

struct platformtest : windowtest {
    static std::optional<std::string> ask(std::string (*dialog)(const platform::filerequest&),
                                          const platform::filerequest& request) {
        try {
            return dialog(request);
        } catch (const runtimeerror& error) {
            EXPECT_EQ(error.kind, errorkind::cancelled);
            return std::nullopt;
        }
    }

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

TEST_F(platformtest, boxesShowWhatTheyAreGiven) {
    answers::expectbox("Warning !", answer::yes, [](QWidget& window) {
        const auto& box = dynamic_cast<QMessageBox&>(window);
        EXPECT_EQ(box.text(), QString::fromUtf8("<b>\xC3\xA9</b>")) << "no markup, and the code page";
        EXPECT_EQ(box.textFormat(), Qt::PlainText);
        EXPECT_EQ(box.icon(), QMessageBox::Critical);
        EXPECT_EQ(box.standardButtons(), QMessageBox::Yes | QMessageBox::No);
        EXPECT_EQ(box.defaultButton(), box.button(QMessageBox::No));
    });
    EXPECT_EQ(
        platform::messagebox("Warning !", "<b>\xE9</b>", buttons::yesno, platform::icon::stop, answer::no),
        answer::yes);

    // Closing a question is a No, whatever its default button.
    answers::expectwindow("", [](QWidget& window) { QTest::keyClick(&window, Qt::Key_Escape); });
    EXPECT_EQ(platform::messagebox("Q", "?", buttons::yesno, platform::icon::question, answer::yes),
              answer::no);

    // The wait pointer makes way for a box and comes back.
    platform::pointer(platform::shape::wait);
    answers::expectbox("W", answer::ok,
                       [](QWidget&) { EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr); });
    platform::messagebox("W", "", buttons::ok, platform::icon::none, answer::ok);
    ASSERT_NE(QGuiApplication::overrideCursor(), nullptr);
    platform::pointer(platform::shape::normal);
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
}

TEST_F(platformtest, openDialogsFilterInAnyLetterCase) {
    for (const char* name : {"a.RAY", "b.ray", "c.Ray", "d.txt", "e._01"}) std::ofstream(inside(name)) << "x";
    const platform::filerequest rooms{"Rooms", "Orvcad Geom.Files (*.ray)|*.ray", "*.RAY", inside("")};
    answers::expectfile("Rooms", inside("c.Ray"), [](QWidget& dialog) {
        EXPECT_TRUE(lists(dialog, {"a.RAY", "b.ray", "c.Ray"}));
        EXPECT_EQ(proposed(dialog), "") << "a pattern is no name";
        EXPECT_EQ(dialog.findChild<QComboBox*>("fileTypeCombo")->currentText(), "Orvcad Geom.Files (*.ray)");
    });
    EXPECT_EQ(ask(platform::askopenfile, rooms), inside("c.Ray"));

    answers::expectfile("Results", "", [](QWidget& dialog) { EXPECT_TRUE(lists(dialog, {"e._01"})); });
    EXPECT_EQ(ask(platform::askopenfile, {"Results", "Impulse Resp.Files (*._*)|*._*", "*._*", inside("")}),
              std::nullopt);
}

TEST_F(platformtest, fileDialogsTakePathsAsBytesAndLeaveTheDirectory) {
    const std::string folder = inside("S\xC3\xA4le"), path = folder + "/\xE2\x82\xAC.ray";
    std::filesystem::create_directory(folder);
    const std::string current = std::filesystem::current_path();
    // A proposal with a directory leads there; a bare name stays in the first directory.
    const struct {
        std::string proposal, name, directory;
    } cases[] = {{path, "\xE2\x82\xAC.ray", folder}, {"old.RAY", "old.RAY", inside("")}};
    for (const auto& one : cases) {
        answers::expectfile("Rooms", folder + "/new.ray", [&](QWidget& dialog) {
            EXPECT_EQ(proposed(dialog).toStdString(), one.name);
            EXPECT_EQ(dynamic_cast<QFileDialog&>(dialog).directory().path().toStdString(), one.directory);
        });
        EXPECT_EQ(ask(platform::asksavefile, {"Rooms", "R|*.ray", one.proposal, inside("")}),
                  folder + "/new.ray");
    }
    // The dialog asks about the name that is written.
    answers::expectfile("Rooms", inside("other"));
    EXPECT_EQ(ask(platform::asksavefile, {"Rooms", "R|*.ray", "", inside("")}), inside("other.ray"));
    EXPECT_EQ(std::filesystem::current_path(), current);
}

TEST_F(platformtest, coloursClipboardAndAbout) {
    answers::expectcolour(rgb(1, 2, 3));
    EXPECT_EQ(platform::askcolour(rgb(255, 0, 0)), rgb(1, 2, 3));
    answers::expectnocolour();
    EXPECT_THROW(platform::askcolour(0), runtimeerror);
    platform::cliptext("na\xEFve\tx");
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QString::fromUtf8("na\xC3\xAFve\tx"));
    answers::expectwindow("About", [](QWidget& window) { QTest::keyClick(&window, Qt::Key_Return); });
    choose("HAbout");
}

TEST_F(platformtest, printsThePictureToAFile) {
    openroom();
    choose("Redraw");
    const QImage before = picturecontents(MainWindow->picture).copy();
    answers::expectprint(inside("page.pdf"));
    choose("Cprint");
    EXPECT_GT(filesize(inside("page.pdf")), 2000U);
    EXPECT_EQ(picturecontents(MainWindow->picture), before);
    answers::expectprint("");
    choose("Cprint");
    answers::expectprint(inside("missing/page.pdf"));
    answers::expectbox("cannot be written", answer::ok);
    choose("Cprint");
}

TEST_F(platformtest, untrappedErrorsAreToldAndEndTheProgram) {
    const auto told = [](const std::string& fragment) {
        answers::expectbox(fragment, answer::ok, [](QWidget&) { std::fputs("told", stderr); });
    };
    const auto fails = [&](const std::string& fragment, const std::function<void()>& routine) {
        told(fragment);
        enter(routine);
    };
    EXPECT_EXIT(fails("File x, line 3",
                      [] {
                          throw runtimeerror{errorkind::pastend, "File x, line 3"};
                      }),
                testing::ExitedWithCode(1), "told");
    EXPECT_EXIT(fails("memory", [] { throw std::bad_alloc(); }), testing::ExitedWithCode(1), "told");
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
