#include "common/StepError.h"
#include "desktop/system/FileRowDelegate.h"
#include "desktop/system/QtClock.h"
#include "desktop/system/QtFileDialogs.h"
#include "desktop/system/QtMessageBox.h"
#include "desktop/system/QtNativeWindow.h"
#include "desktop/system/QtScreen.h"
#include "desktop/system/QtScreenCapture.h"
#include "tests/desktop_windows/TemporaryFolder.h"
#include "tests/desktop_windows/WaitUntil.h"
#include <QAbstractButton>
#include <QApplication>
#include <QDateTime>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QScreen>
#include <QTest>
#include <QTimer>
#include <QTreeView>
#include <QUrl>
#include <cstring>
#include <gtest/gtest.h>
#include <map>

namespace velmorant {
namespace {

std::string buttonText(MessageAnswer answer) {
    return answer == MessageAnswer::Yes ? "Ja" : answer == MessageAnswer::No ? "Nein" : "Gut";
}

/// Does something with the modal window as soon as it is there.
template <typename Dialog>
void whenShown(std::function<void(Dialog&)> action) {
    QTimer::singleShot(0, [action] {
        Dialog* dialog = nullptr;
        ASSERT_TRUE(waitUntil([&] {
            dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget());
            return dialog && dialog->isVisible();
        }));
        action(*dialog);
    });
}

void press(const QMessageBox& box, const QString& label) {
    for (QAbstractButton* button : box.buttons())
        if (button->text() == label)
            return button->click();
    ADD_FAILURE() << "no button " << label.toStdString();
}

TEST(QtClock, tells_the_present_local_time) {
    const LocalTime time = QtClock().localTime();
    const QDateTime told(QDate(time.year, time.month, time.day),
                         QTime(time.hour, time.minute, time.second));
    EXPECT_LE(std::abs(told.secsTo(QDateTime::currentDateTime())), 1);
}

TEST(QtMessageBox, a_question_is_answered_by_its_buttons_and_no_by_closing) {
    HandlerGate gate;
    QtMessageBox boxes(gate, buttonText);
    const auto ask = [&] { return boxes.show("<b>Sure?</b>", "Title", MessageStyle::Question); };
    whenShown<QMessageBox>([](QMessageBox& box) {
        EXPECT_EQ(box.text(), "<b>Sure?</b>");
        EXPECT_EQ(box.textFormat(), Qt::PlainText);
        EXPECT_EQ(box.windowTitle(), "Title");
        EXPECT_FALSE(box.iconPixmap().isNull());
        press(box, "Ja");
    });
    EXPECT_EQ(ask(), MessageAnswer::Yes);
    whenShown<QMessageBox>([](QMessageBox& box) { press(box, "Nein"); });
    EXPECT_EQ(ask(), MessageAnswer::No);
    whenShown<QMessageBox>([](QMessageBox& box) { box.close(); });
    EXPECT_EQ(ask(), MessageAnswer::No);
    whenShown<QMessageBox>([](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Escape); });
    EXPECT_EQ(ask(), MessageAnswer::No);
}

TEST(QtMessageBox, a_notice_has_one_button) {
    HandlerGate gate;
    QtMessageBox boxes(gate, buttonText);
    for (const auto style : {MessageStyle::Stop, MessageStyle::Information}) {
        whenShown<QMessageBox>([](QMessageBox& box) {
            EXPECT_EQ(box.buttons().size(), 1);
            press(box, "Gut");
        });
        EXPECT_EQ(boxes.show("text", "title", style), MessageAnswer::Ok);
    }
}

TEST(QtMessageBox, shows_markup_as_it_is_and_of_a_long_text_both_ends) {
    HandlerGate gate;
    QtMessageBox boxes(gate, buttonText);
    QString shown;
    Qt::TextFormat format = Qt::AutoText;
    const auto look = [&](QMessageBox& box) {
        shown = box.text();
        format = box.textFormat();
        press(box, "Gut");
    };
    whenShown<QMessageBox>(look);
    boxes.show("<b>x</b> &amp; y.MP4", "title", MessageStyle::Stop);
    EXPECT_EQ(shown, "<b>x</b> &amp; y.MP4");
    EXPECT_EQ(format, Qt::PlainText);
    whenShown<QMessageBox>(look);
    boxes.show("begin " + std::string(5000000, 'x') + " reason", "title", MessageStyle::Stop);
    EXPECT_LE(shown.size(), 2000);
    EXPECT_TRUE(shown.startsWith("begin ") && shown.endsWith(" reason"));
}

TEST(Theme, boxes_of_the_toolkit_show_names_as_they_are) {
    QMessageBox box(QMessageBox::Warning, "title", "<b>x</b>.jpg already exists.");
    box.setInformativeText("<i>y</i>");
    box.show();
    for (const char* name : {"qt_msgbox_label", "qt_msgbox_informativelabel"}) {
        const auto* label = box.findChild<QLabel*>(name);
        ASSERT_NE(label, nullptr) << name;
        EXPECT_EQ(label->textFormat(), Qt::PlainText) << name;
    }
}

TEST(QtMessageBox, timers_of_the_program_go_on_behind_it) {
    HandlerGate gate;
    QtMessageBox boxes(gate, buttonText);
    bool ran = false;
    whenShown<QMessageBox>([&](QMessageBox& box) {
        gate.runWhenFree([&] { ran = true; });
        EXPECT_TRUE(ran);
        box.close();
    });
    gate.runWhenFree([&] { boxes.show("text", "title", MessageStyle::Information); });
    EXPECT_TRUE(ran);
}

void chooseNames(QFileDialog& dialog, const QString& names) {
    dialog.findChild<QLineEdit*>("fileNameEdit")->setText(names);
    QMetaObject::invokeMethod(&dialog, "accept");
}

TEST(QtFileDialogs, one_file_comes_as_its_full_path_several_as_folder_and_names) {
    const TemporaryFolder folder;
    folder.write("103045.MP4", "");
    folder.write("103210_P.MP4", "");
    HandlerGate gate;
    QtFileDialogs dialogs(gate);
    const OpenFilesRequest request{"Open Media files", "MP4 file|*.MP4", 32767};
    whenShown<QFileDialog>([&](QFileDialog& dialog) {
        EXPECT_EQ(dialog.windowTitle(), "Open Media files");
        EXPECT_EQ(dialog.nameFilters(), QStringList{"MP4 file (*.MP4)"});
        dialog.setDirectory(QString::fromStdString(folder.path()));
        chooseNames(dialog, "103045.MP4");
    });
    EXPECT_EQ(dialogs.openFiles(request), folder.path("103045.MP4"));
    whenShown<QFileDialog>([&](QFileDialog& dialog) {
        EXPECT_EQ(dialog.directory().absolutePath().toStdString(), folder.path());
        chooseNames(dialog, "\"103045.MP4\" \"103210_P.MP4\"");
    });
    EXPECT_EQ(dialogs.openFiles(request), folder.path() + std::string("\0"
                                                                      "103045.MP4\0"
                                                                      "103210_P.MP4",
                                                                      24));
    whenShown<QFileDialog>([&](QFileDialog& dialog) { dialog.reject(); });
    EXPECT_EQ(dialogs.openFiles(request), "");
}

TEST(QtFileDialogs, names_typed_with_a_folder_stay_in_that_folder) {
    const TemporaryFolder here;
    const TemporaryFolder there;
    here.write("103045.MP4", "");
    there.write("103210_P.MP4", "");
    there.write("103340.MP4", "");
    HandlerGate gate;
    QtFileDialogs dialogs(gate);
    const auto typed = [&](const std::string& names) {
        whenShown<QFileDialog>([&](QFileDialog& dialog) {
            dialog.setDirectory(QString::fromStdString(here.path()));
            chooseNames(dialog, QString::fromStdString(names));
        });
        return dialogs.openFiles({"title", "MP4 file|*.MP4", 32767});
    };
    const std::string nul(1, '\0');
    EXPECT_EQ(typed('"' + there.path("103210_P.MP4") + "\" \"" + there.path("103340.MP4") + '"'),
              there.path() + nul + "103210_P.MP4" + nul + "103340.MP4");
    EXPECT_EQ(typed("\"103045.MP4\" \"" + there.path("103340.MP4") + '"'),
              here.path() + nul + "103045.MP4" + nul + there.path("103340.MP4"));
}

TEST(QtFileDialogs, the_last_folder_is_remembered_by_the_next_run) {
    const TemporaryFolder folder;
    folder.write("a.MP4", "");
    HandlerGate gate;
    const OpenFilesRequest request{"title", "MP4 file|*.MP4", 32767};
    whenShown<QFileDialog>([&](QFileDialog& dialog) {
        dialog.setDirectory(QString::fromStdString(folder.path()));
        chooseNames(dialog, "a.MP4");
    });
    QtFileDialogs(gate, folder.path("memory.ini")).openFiles(request);
    QString opened;
    whenShown<QFileDialog>([&](QFileDialog& dialog) {
        opened = dialog.directory().absolutePath();
        dialog.reject();
    });
    QtFileDialogs(gate, folder.path("memory.ini")).openFiles(request);
    EXPECT_EQ(opened.toStdString(), folder.path());
}

TEST(QtFileDialogs, cards_are_places_and_the_first_dialog_opens_on_one) {
    const TemporaryFolder card;
    HandlerGate gate;
    std::vector<std::string> cards = {card.path(), "/media/anna/DASHCAM"};
    QtFileDialogs dialogs(gate, {}, {}, [&] { return cards; });
    QString opened;
    QList<QUrl> places;
    const auto look = [&](QFileDialog& dialog) {
        opened = dialog.directory().absolutePath();
        places = dialog.sidebarUrls();
        dialog.reject();
    };
    const OpenFilesRequest request{"title", "MP4 file|*.MP4", 32767};
    whenShown<QFileDialog>(look);
    dialogs.openFiles(request);
    EXPECT_EQ(opened.toStdString(), card.path());
    EXPECT_TRUE(places.contains(QUrl::fromLocalFile(QString::fromStdString(card.path()))));
    EXPECT_TRUE(places.contains(QUrl::fromLocalFile("/media/anna/DASHCAM")));

    cards.clear();
    whenShown<QFileDialog>(look);
    dialogs.openFiles(request);
    EXPECT_NE(opened.toStdString(), card.path());
    EXPECT_FALSE(places.contains(QUrl::fromLocalFile("/media/anna/DASHCAM"))) << "taken out";
}

TEST(QtFileDialogs, saving_proposes_the_name_and_adds_the_ending_of_the_filter) {
    const TemporaryFolder folder;
    HandlerGate gate;
    QtFileDialogs dialogs(gate);
    whenShown<QFileDialog>([&](QFileDialog& dialog) {
        EXPECT_EQ(dialog.findChild<QLineEdit*>("fileNameEdit")->text(), "20121009103045");
        dialog.setDirectory(QString::fromStdString(folder.path()));
        chooseNames(dialog, "20121009103045");
    });
    EXPECT_EQ(dialogs.saveFile({"title", "JPG format file|*.jpg", "20121009103045"}),
              folder.path("20121009103045.jpg"));
}

TEST(QtFileDialogs, kinds_stand_in_the_language_of_the_program) {
    const TemporaryFolder folder;
    folder.write("103045.MP4", "");
    ASSERT_TRUE(QDir(QString::fromStdString(folder.path())).mkdir("20240612"));
    HandlerGate gate;
    const std::map<std::string, std::string> additions = {
        {"toolkit.language", "zh_TW"}, {"files.folder", "資料夾"}, {"files.file", "%1 檔案"}};
    QtFileDialogs dialogs(gate, {}, [&](const std::string& name) { return additions.at(name); });
    std::map<QString, QString> kinds;
    whenShown<QFileDialog>([&](QFileDialog& dialog) {
        dialog.setDirectory(QString::fromStdString(folder.path()));
        const auto* view = dialog.findChild<QTreeView*>("treeView");
        EXPECT_NE(dynamic_cast<FileRowDelegate*>(dialog.itemDelegate()), nullptr);
        EXPECT_TRUE(QTest::qWaitFor([&] {
            kinds.clear();
            for (int row = 0; row < view->model()->rowCount(view->rootIndex()); ++row)
                kinds[view->model()->index(row, 0, view->rootIndex()).data().toString()] =
                    view->model()->index(row, 2, view->rootIndex()).data().toString();
            return kinds.size() == 2 && !kinds["20240612"].isEmpty();
        }));
        dialog.reject();
    });
    dialogs.openFiles({"title", "MP4 file|*.MP4", 32767});
    EXPECT_EQ(kinds["20240612"], "資料夾");
    EXPECT_EQ(kinds["103045.MP4"], "MP4 檔案");
}

TEST(QtFileDialogs, filters_are_pairs_of_description_and_patterns) {
    EXPECT_EQ(QtFileDialogs::nameFilters("JPEG|*.jpg;*.jpeg|PNG|*.png"),
              (QStringList{"JPEG (*.jpg *.jpeg)", "PNG (*.png)"}));
}

TEST(QtScreen, sees_120_dots_per_inch_and_takes_every_other_density_as_96) {
    EXPECT_EQ(QtScreen::twipsPerPixel(96.0), 15);
    EXPECT_EQ(QtScreen::twipsPerPixel(120.2), 12);
    EXPECT_EQ(QtScreen::twipsPerPixel(144.0), 15);
    const QtScreen screen;
    EXPECT_EQ(screen.width() / screen.twipsPerPixelX(),
              QApplication::primaryScreen()->geometry().width());
}

TEST(QtScreenCapture, copies_the_screen_and_writes_bmp_whatever_the_name_says) {
    const TemporaryFolder folder;
    QWidget window;
    window.setWindowFlag(Qt::FramelessWindowHint);
    window.setStyleSheet("background: rgb(10, 200, 30)");
    window.setGeometry(50, 40, 200, 100);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    QTest::qWait(50);
    QtScreenCapture capture;
    capture.capture({60, 50, 20, 10});
    capture.savePicture(folder.path("still.jpg"));
    const QByteArray bytes = folder.read("still.jpg");
    EXPECT_EQ(bytes.left(2), "BM");
    const QImage picture = QImage::fromData(bytes, "BMP");
    ASSERT_EQ(picture.size(), QSize(20, 10));
    EXPECT_EQ(picture.pixelColor(10, 5), QColor(10, 200, 30));
}

TEST(QtScreenCapture, parts_outside_the_screen_are_black) {
    const TemporaryFolder folder;
    QtScreenCapture capture;
    capture.capture({-30, -30, 20, 20});
    capture.savePicture(folder.path("still.bmp"));
    const QImage picture(QString::fromStdString(folder.path("still.bmp")));
    ASSERT_EQ(picture.size(), QSize(20, 20));
    EXPECT_EQ(picture.pixelColor(10, 10), QColor(Qt::black));
}

TEST(QtScreenCapture, a_picture_that_cannot_be_saved_is_an_error_with_its_path) {
    const TemporaryFolder folder;
    QtScreenCapture capture;
    EXPECT_THROW(capture.savePicture(folder.path("x.bmp")), StepError);
    capture.capture({0, 0, 10, 10});
    EXPECT_THROW(capture.savePicture(folder.path("no/such/x.bmp")), StepError);
    EXPECT_TRUE(folder.names().isEmpty());
}

TEST(QtNativeWindow, asks_the_procedure_for_the_size_limits_and_applies_the_greatest) {
    QWidget window;
    window.setMinimumSize(300, 200);
    QtNativeWindow native(window);
    const WindowProcedure before = native.windowProcedure();
    std::int32_t least[2] = {0, 0};
    native.setWindowProcedure([&](const WindowMessage& message) {
        EXPECT_EQ(message.message, 0x24u);
        std::memcpy(least, message.record + 24, sizeof(least));
        const std::int32_t greatest[2] = {1024, 708};
        std::memcpy(message.record + 32, greatest, sizeof(greatest));
        return before(message);
    });
    EXPECT_EQ(least[0], 300);
    EXPECT_EQ(least[1], 200);
    EXPECT_EQ(window.maximumSize(), QSize(1024, 708));
}

TEST(QtNativeWindow, the_system_menu_loses_the_item_at_a_position) {
    QWidget window;
    QtNativeWindow native(window);
    ASSERT_EQ(native.systemMenuItemCount(), 7);
    native.deleteSystemMenuItem(4);
    native.deleteSystemMenuItem(40);
    native.deleteSystemMenuItem(-1);
    using Item = QtNativeWindow::MenuItem;
    EXPECT_EQ(native.systemMenu(),
              (std::vector<Item>{Item::Restore, Item::Move, Item::Size, Item::Minimize,
                                 Item::Separator, Item::Close}));
}

} // namespace
} // namespace velmorant
