// Boxes and dialogs, printing, the region, events that have no signal, and the errors that nobody trapped.
#include "windowtest.h"

#include "platform/qt/boundary.h"
#include "platform/qt/windowhook.h"
#include "scene/drawsurface.h"

#include <QAbstractItemView>
#include <QClipboard>
#include <QComboBox>
#include <QFileDialog>
#include <QFileSystemModel>
#include <QLabel>
#include <QMessageBox>
#include <QProcess>
#include <QPushButton>
#include <QSortFilterProxyModel>
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
    std::ofstream(path) << "x";
    const std::string current = std::filesystem::current_path();
    answers::expectfile("Rooms", path);
    EXPECT_EQ(ask(platform::askopenfile, {"Rooms", "R|*.ray", "*.ray", inside("")}), path);
    EXPECT_EQ(std::filesystem::current_path(), current);

    // A proposal with a directory leads there; a bare name stays in the first directory.
    answers::expectfile("Rooms", folder + "/new.ray", [&](QWidget& dialog) {
        EXPECT_EQ(proposed(dialog).toStdString(), "\xE2\x82\xAC.ray");
        EXPECT_EQ(dynamic_cast<QFileDialog&>(dialog).directory().path().toStdString(), folder);
    });
    EXPECT_EQ(ask(platform::asksavefile, {"Rooms", "R|*.ray", path, inside("")}), folder + "/new.ray");
    answers::expectfile("Rooms", inside("other"), [&](QWidget& dialog) {
        EXPECT_EQ(proposed(dialog), "old.RAY");
        EXPECT_EQ(dynamic_cast<QFileDialog&>(dialog).directory().path().toStdString(), inside(""));
    });
    EXPECT_EQ(ask(platform::asksavefile, {"Rooms", "R|*.ray", "old.RAY", inside("")}), inside("other.ray"))
        << "the dialog asks about the name that is written";
    EXPECT_EQ(std::filesystem::current_path(), current);
}

TEST_F(platformtest, coloursAndClipboard) {
    answers::expectcolour(rgb(1, 2, 3));
    EXPECT_EQ(platform::askcolour(rgb(255, 0, 0)), rgb(1, 2, 3));
    answers::expectnocolour();
    EXPECT_THROW(platform::askcolour(0), runtimeerror);

    platform::cliptext("na\xEFve\tx");
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QString::fromUtf8("na\xC3\xAFve\tx"));
    openroom();
    choose("Copy");
    EXPECT_EQ(QGuiApplication::clipboard()->image().convertToFormat(QImage::Format_RGB32),
              picturecontents(MainWindow->picture));
}

TEST_F(platformtest, printsThePictureToAFile) {
    openroom();
    choose("Redraw");
    const QImage before = picturecontents(MainWindow->picture).copy();
    answers::expectprint(inside("page.pdf"));
    choose("Cprint");
    const filebytes page = readfile(inside("page.pdf"));
    EXPECT_TRUE(std::string_view(page).starts_with("%PDF"));
    EXPECT_GT(page.size, 2000U);
    EXPECT_EQ(picturecontents(MainWindow->picture), before);
    EXPECT_TRUE(action("OpenRes").isEnabled());

    answers::expectprint("");
    choose("Cprint");
    answers::expectprint(inside("missing/page.pdf"));
    answers::expectbox("cannot be written", answer::ok);
    choose("Cprint");
}

TEST_F(platformtest, aboutTellsTheVersion) {
    answers::expectwindow("About", [](QWidget& window) {
        EXPECT_EQ(window.findChild<QLabel*>("VersionText")->text(), "Version 3.10");
        QTest::keyClick(&window, Qt::Key_Return);
    });
    choose("HAbout");
    EXPECT_THROW(platform::showwindow("Nothing", true), runtimeerror);
}

TEST(region, isThatOfTheUserWhateverTheProgramWritesItself) {
    const struct {
        const char *locale, *marks;
    } rows[] = {{"C", ".,"},           {"POSIX", ".,"},       {"C.UTF-8", ".,"},
                {"en_US.UTF-8", ".,"}, {"de_DE.UTF-8", ",."}, {"fr_CH.UTF-8", nullptr}};
    for (const auto& row : rows) {
        QProcess program;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const char* name : {"LANG", "LC_NUMERIC"}) environment.remove(name);
        environment.insert("LC_ALL", row.locale);
        program.setProcessEnvironment(environment);
        program.start(QCoreApplication::applicationFilePath(), {"--region"});
        ASSERT_TRUE(program.waitForFinished(30000));
        const QByteArray marks = program.readAllStandardOutput();
        if (row.marks)
            EXPECT_EQ(marks, row.marks) << row.locale;
        else
            EXPECT_NE(marks, ".,") << row.locale;
    }
}

TEST_F(platformtest, hooksSeeEventsWithoutASignal) {
    QWidget widget;
    widget.resize(100, 100);
    std::vector<std::string> seen;
    const auto note = [&](const std::string& text) { seen.push_back(text); };
    windowhook calls;
    calls.pointer = [&](const pointerevent& event) {
        note(std::to_string(static_cast<int>(event.action)) + (event.left ? "l" : "") +
             (event.right ? "r" : "") + std::to_string(static_cast<int>(event.x)));
    };
    calls.key = [&](int key) { note(key == Qt::Key_A ? "A" : "?"); };
    calls.resize = [&] { note("size"); };
    calls.close = [&] { note("close"); };
    calls.paint = [] { throw runtimeerror{errorkind::cancelled, ""}; };
    widget.show();
    QTest::qWait(1);
    hook(widget, calls);
    QTest::mousePress(&widget, Qt::RightButton, {}, QPoint(5, 6));
    QTest::mouseRelease(&widget, Qt::RightButton, {}, QPoint(7, 6));
    QTest::mouseDClick(&widget, Qt::LeftButton, {}, QPoint(9, 6));
    QTest::keyClick(&widget, Qt::Key_A);
    QKeyEvent repeated(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier, "a", true);
    QCoreApplication::sendEvent(&widget, &repeated);
    widget.resize(120, 100);
    widget.repaint(); // the cancelled error ends here
    widget.close();
    EXPECT_EQ(seen, (std::vector<std::string>{"0r5", "1r7", "3l9", "A", "size", "close"}));
}

using boundarytest = platformtest;

TEST_F(boundarytest, untrappedErrorsAreToldAndEndTheProgram) {
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
    EXPECT_EXIT(fails("odd", [] { throw std::runtime_error("odd"); }), testing::ExitedWithCode(1), "told");

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

TEST_F(boundarytest, aCancelNobodyTrappedEndsTheCommand) {
    enter([] { throw runtimeerror{errorkind::cancelled, "Cancelled"}; });
}

} // namespace
} // namespace orv
