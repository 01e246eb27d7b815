#include "desktop/system/shownText.h"

#include <QTextDocument>
#include <gtest/gtest.h>

namespace velmorant {
namespace {

QString drawnAsToolTip(const QString& toolTip) {
    if (!Qt::mightBeRichText(toolTip))
        return toolTip;
    QTextDocument document;
    document.setHtml(toolTip);
    return document.toPlainText();
}

TEST(shownText, keeps_what_can_be_read_and_both_ends_of_the_rest) {
    EXPECT_EQ(shownText(std::string("103045.MP4: 車速\nwhy")), "103045.MP4: 車速\nwhy");
    EXPECT_EQ(shownText(std::string()), "");
    const QString cut = shownText("begin" + std::string(5000000, 'x') + "end");
    EXPECT_EQ(cut.size(), mostShownCharacters);
    EXPECT_TRUE(cut.startsWith("beginx") && cut.endsWith("xend"));
    EXPECT_TRUE(cut.contains(" … "));
    EXPECT_EQ(shownText(std::string(2000, 'x')).size(), 2000);
}

TEST(shownText, keeps_characters_of_two_units_whole) {
    for (const QString before : {"", "x"}) {
        const QString cut = shownText(before + QString("\U0001F697").repeated(3000));
        EXPECT_LE(cut.size(), mostShownCharacters);
        EXPECT_TRUE(cut.isValidUtf16());
    }
}

TEST(shownText, has_no_more_lines_than_a_screen) {
    const QString cut = shownText("first\n" + std::string(900, '\n') + "last");
    EXPECT_LE(cut.count('\n'), mostShownLines);
    EXPECT_TRUE(cut.startsWith("first\n") && cut.endsWith("\nlast"));
}

TEST(shownToolTip, draws_what_looks_like_markup_as_it_is) {
    for (const QString name : {"103045.MP4", "<b>x</b>.MP4", "a & b.MP4", "&lt;b&gt; &amp;.MP4",
                               "<img src='x'>  y\nz", "<!doctype html>", "<?xml?><p>"})
        EXPECT_EQ(drawnAsToolTip(shownToolTip(name)), name);
    EXPECT_EQ(shownToolTip(QString("103045.MP4")), "103045.MP4");
}

TEST(shownLabel, underlines_no_letter) {
    EXPECT_EQ(shownLabel("Tom & Anna"), "Tom && Anna");
}

} // namespace
} // namespace velmorant
