#include "desktop/system/FileRowDelegate.h"

#include "desktop/system/FileKinds.h"
#include "tests/desktop_windows/TemporaryFolder.h"

#include <QDateTime>
#include <QFileInfo>
#include <QFileSystemModel>

#include <gtest/gtest.h>

namespace velmorant {
namespace {

struct ShownTexts : FileRowDelegate {
    using FileRowDelegate::FileRowDelegate;
    QString of(const QModelIndex& index) const {
        QStyleOptionViewItem option;
        initStyleOption(&option, index);
        return option.text;
    }
};

TEST(FileRowDelegate, dates_read_the_same_in_every_language) {
    const TemporaryFolder folder;
    folder.write("103045.MP4", "");
    QFile file(QString::fromStdString(folder.path("103045.MP4")));
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    ASSERT_TRUE(file.setFileTime(QDateTime(QDate(2024, 6, 12), QTime(10, 30, 45)),
                                 QFileDevice::FileModificationTime));
    file.close();
    QFileSystemModel files;
    files.setRootPath(QString::fromStdString(folder.path()));
    const FileKinds kinds("Folder", "%1 file");
    const ShownTexts shown(kinds);
    const QString path = file.fileName();
    EXPECT_EQ(shown.of(files.index(path, 3)), "2024-06-12 10:30");
    EXPECT_EQ(shown.of(files.index(path, 2)), "MP4 file") << "whatever the model has kept";
    EXPECT_EQ(shown.of(files.index(path, 0)), "103045.MP4");
    EXPECT_EQ(shown.of(files.index(QString::fromStdString(folder.path()), 2)), "Folder");
}

TEST(FileKinds, a_name_without_an_ending_is_a_file_all_the_same) {
    const TemporaryFolder folder;
    folder.write("README", "");
    EXPECT_EQ(FileKinds("Folder", "%1 file")
                  .type(QFileInfo(QString::fromStdString(folder.path("README")))),
              "file");
}

} // namespace
} // namespace velmorant
