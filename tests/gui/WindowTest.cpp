#include "tests/gui/ProgramTest.h"

namespace velmorant {

using WindowTest = ProgramTest;

TEST_F(WindowTest, language_1002_shows_chinese) {
    start(chinese);
    add({recording(1)});
    EXPECT_NE(rooms().rows->text(1, SubItem::KindLabel).find("\u4e00\u822c"), std::string::npos);
    const QString all = panes().list.skin->elementWidget("all")->accessibleName();
    EXPECT_TRUE(all.contains("\u5168\u90e8")) << all.toStdString();
    EXPECT_EQ(driver().map().evaluate("document.documentElement.lang").toStdString(), "zh-Hant");
    EXPECT_EQ(driver().map().evaluate("document.title").toStdString(), "\u8def\u7dda\u5730\u5716");
}

} // namespace velmorant
