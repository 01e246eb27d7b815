#include "desktop/system/mountedCards.h"

#include <gtest/gtest.h>
#include <sstream>

namespace velmorant {
namespace {

using Folders = std::vector<std::string>;

Folders cardsOf(const std::string& table) {
    std::istringstream lines(table);
    return mountedCards(lines);
}

TEST(mountedCards, are_what_desktops_mount_for_their_users) {
    EXPECT_EQ(cardsOf("/dev/sda1 / ext4 rw 0 0\n"
                      "tmpfs /run/user/1000 tmpfs rw 0 0\n"
                      "server:/films /mnt/films nfs rw 0 0\n"
                      "/dev/sdb1 /media/anna/DASHCAM vfat rw 0 0\n"
                      "/dev/sdc1 /run/media/anna/9C33-6BBD exfat rw 0 0\n"
                      "/dev/sda2 /mediaserver ext4 rw 0 0\n"),
              (Folders{"/media/anna/DASHCAM", "/run/media/anna/9C33-6BBD"}));
}

TEST(mountedCards, names_with_blanks_and_signs_are_read_as_they_are) {
    EXPECT_EQ(cardsOf("/dev/sdb1 /media/anna/MY\\040CARD\\134A vfat rw 0 0\n"
                      "/dev/sdc1 /media/anna/行車 vfat rw 0 0\n"),
              (Folders{"/media/anna/MY CARD\\A", "/media/anna/行車"}));
}

TEST(mountedCards, a_folder_that_is_mounted_twice_counts_once) {
    EXPECT_EQ(cardsOf("/dev/sdb1 /media/a vfat rw 0 0\n/dev/sdb1 /media/a vfat rw 0 0\n"),
              (Folders{"/media/a"}));
}

TEST(mountedCards, lines_that_are_cut_off_or_strange_are_passed_over) {
    EXPECT_EQ(cardsOf(""), Folders());
    EXPECT_EQ(cardsOf("\n\n/dev/sdb1\n/dev/sdb1 /media\n"), Folders());
    EXPECT_EQ(cardsOf("/dev/sdb1 /media/a\\04"), (Folders{"/media/a\\04"}));
    EXPECT_EQ(cardsOf("/dev/sdb1 /media/a\\9999 vfat"), (Folders{"/media/a\\9999"}));
}

} // namespace
} // namespace velmorant
