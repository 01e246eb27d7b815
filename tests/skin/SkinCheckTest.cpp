#include "tools/check_skin/SkinCheck.h"
#include "tests/skin/SkinBuilder.h"

#include <QFile>
#include <QGuiApplication>
#include <QProcess>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <memory>
#include <ostream>

namespace velmorant {
namespace {

using test::SkinBuilder;
using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

std::vector<std::string> plain(const QStringList& findings) {
    std::vector<std::string> lines;
    for (const QString& finding : findings)
        lines.push_back(finding.toStdString());
    return lines;
}

class SkinCheck : public ::testing::Test {
  protected:
    SkinCheck() {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        m_application = std::make_unique<QGuiApplication>(m_count, m_arguments);
    }

    QString written(const QString& text) {
        const QString path = m_folder.filePath("skin.mp4");
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text.toUtf8());
        return path;
    }

    std::vector<std::string> findingsOf(const SkinBuilder& skin, SkinKind kind = SkinKind::Bar) {
        const DissectedSkin drawing(written(skin.text()));
        EXPECT_EQ(drawing.problem().toStdString(), "");
        return drawing.problem().isEmpty() ? plain(checkSkin(drawing, kind))
                                           : std::vector<std::string>{};
    }

    std::string problemOf(const QString& text) {
        return DissectedSkin(written(text)).problem().toStdString();
    }

    int exitCodeOf(const QStringList& arguments) {
        QProcess process;
        process.start(CHECK_SKIN_COMMAND, arguments);
        EXPECT_TRUE(process.waitForFinished(60000));
        m_errors = process.readAllStandardError().toStdString();
        return process.exitCode();
    }

    std::string m_errors;

  private:
    int m_count = 1;
    char m_name[11] = "skin_check";
    char* m_arguments[2] = {m_name, nullptr};
    std::unique_ptr<QGuiApplication> m_application;
    QTemporaryDir m_folder;
};

TEST_F(SkinCheck, accepts_a_whole_skin) {
    EXPECT_THAT(findingsOf({}), IsEmpty());
}

TEST_F(SkinCheck, names_a_missing_element) {
    const DissectedSkin drawing(
        written(QString(SkinBuilder().text()).replace("\"mylist\"", "\"x\"")));
    EXPECT_THAT(plain(checkSkin(drawing, SkinKind::Bar)),
                ElementsAre("element \"mylist\" is missing"));
}

TEST_F(SkinCheck, finds_an_element_whatever_the_case_of_its_id) {
    const DissectedSkin drawing(
        written(QString(SkinBuilder().text()).replace("\"mylist\"", "\"MyList\"")));
    EXPECT_THAT(plain(checkSkin(drawing, SkinKind::Bar)), IsEmpty());
}

TEST_F(SkinCheck, names_each_missing_state) {
    SkinBuilder skin;
    skin.states = {"normal", "hover", "focus", "disabled"};
    EXPECT_THAT(findingsOf(skin), ElementsAre("state \"mylist.pressed\" is missing",
                                              "state \"mylist.on\" is missing"));
}

TEST_F(SkinCheck, asks_the_elements_of_the_kind_that_it_is_told) {
    EXPECT_THAT(findingsOf({}, SkinKind::Pane),
                ::testing::IsSupersetOf({"element \"place.map\" is missing",
                                         "element \"place.bar\" is missing",
                                         "is 338 x 32; the window is 338 x 248"}));
}

TEST_F(SkinCheck, wants_a_name_for_screen_readers) {
    SkinBuilder skin;
    skin.title.clear();
    EXPECT_THAT(findingsOf(skin), ElementsAre(HasSubstr("\"mylist\" has no <title>")));
}

TEST_F(SkinCheck, notices_a_state_that_paints_nothing) {
    SkinBuilder skin;
    skin.paintSpoiltState = false;
    EXPECT_THAT(findingsOf(skin), ElementsAre("\"mylist.hover\" paints nothing"));
}

TEST_F(SkinCheck, notices_a_state_of_another_size) {
    SkinBuilder skin;
    skin.box = "width=\"76\"";
    EXPECT_THAT(findingsOf(skin),
                ElementsAre("\"mylist.hover\" has another place or size than \"mylist\""));
}

TEST_F(SkinCheck, looks_at_a_state_that_may_be_left_out_when_it_is_there) {
    SkinBuilder skin;
    skin.states << "on.focus";
    EXPECT_THAT(findingsOf(skin), IsEmpty());
    skin.spoiltState = "on.focus";
    skin.box = "width=\"76\"";
    EXPECT_THAT(findingsOf(skin),
                ElementsAre("\"mylist.on.focus\" has another place or size than \"mylist\""));
}

TEST_F(SkinCheck, notices_an_id_that_stands_twice) {
    SkinBuilder skin;
    skin.extra = "<rect id=\"Ground\" width=\"338\" height=\"32\" fill=\"#121821\"/>";
    EXPECT_THAT(findingsOf(skin), ElementsAre("the id \"ground\" stands twice"));
}

TEST_F(SkinCheck, notices_a_label_wider_than_its_button) {
    SkinBuilder skin;
    skin.label = "Show the recordings";
    EXPECT_THAT(findingsOf(skin), ElementsAre(AllOf(HasSubstr("Show the recordings"),
                                                    HasSubstr("\"mylist.hover\" is cut off"))));
}

struct GroundText {
    const char* what;
    const char* svg;
    const char* finding; ///< empty: none
};

std::ostream& operator<<(std::ostream& stream, const GroundText& text) {
    return stream << text.what;
}

class SkinGroundText : public SkinCheck, public ::testing::WithParamInterface<GroundText> {};

TEST_P(SkinGroundText, is_looked_over) {
    SkinBuilder skin;
    skin.extra = GetParam().svg;
    const std::vector<std::string> findings = findingsOf(skin);
    if (std::string(GetParam().finding).empty())
        EXPECT_THAT(findings, IsEmpty());
    else
        EXPECT_THAT(findings, ElementsAre(HasSubstr(GetParam().finding)));
}

INSTANTIATE_TEST_SUITE_P(
    texts, SkinGroundText,
    ::testing::Values(
        GroundText{"inside", "<text x=\"8\" y=\"20\" font-size=\"13\" fill=\"#EAF0F6\">Map</text>",
                   ""},
        GroundText{"left of the window",
                   "<text x=\"-6\" y=\"20\" font-size=\"13\" fill=\"#EAF0F6\">Map</text>",
                   "cut off by the window"},
        GroundText{"below the window",
                   "<text x=\"8\" y=\"34\" font-size=\"13\" fill=\"#EAF0F6\">gyp</text>",
                   "cut off by the window"},
        GroundText{"under a button",
                   "<text x=\"200\" y=\"20\" font-size=\"13\" fill=\"#EAF0F6\">Recordings</text>",
                   "it runs under \"mylist\""},
        GroundText{"dark on dark",
                   "<text x=\"8\" y=\"20\" font-size=\"13\" fill=\"#5C6C7E\">Map</text>",
                   "contrast"},
        GroundText{"faint",
                   "<text x=\"8\" y=\"20\" font-size=\"13\" fill=\"#EAF0F6\" "
                   "fill-opacity=\".3\">Map</text>",
                   "contrast"},
        GroundText{"on a bright spot of the ground",
                   "<rect width=\"60\" height=\"32\" fill=\"#45C9D6\"/>"
                   "<text x=\"8\" y=\"20\" font-size=\"13\" fill=\"#EAF0F6\">Map</text>",
                   "contrast"},
        GroundText{"a sign of no font",
                   "<text x=\"8\" y=\"20\" font-size=\"13\" fill=\"#EAF0F6\">A\xCD\xB8</text>",
                   "no font here can show"}));

TEST_F(SkinCheck, measures_a_label_against_the_face_under_it) {
    SkinBuilder skin;
    skin.face = "#2C9FAB";
    EXPECT_THAT(findingsOf(skin),
                ElementsAre(AllOf(HasSubstr("\"mylist.hover\""), HasSubstr("less than 4.5:1"))));
    skin.labelColour = "#04191E";
    EXPECT_THAT(findingsOf(skin), IsEmpty());
}

TEST_F(SkinCheck, measures_a_sign_against_the_face_under_it) {
    SkinBuilder skin;
    skin.signColour = "#3A4550";
    EXPECT_THAT(findingsOf(skin), ElementsAre(AllOf(HasSubstr("the sign of \"mylist.hover\""),
                                                    HasSubstr("less than 3:1"))));
    skin.signColour = "#EAF0F6";
    EXPECT_THAT(findingsOf(skin), IsEmpty());
}

TEST_F(SkinCheck, asks_an_optional_element_to_be_whole) {
    SkinBuilder skin;
    skin.rootAttributes = "width=\"656\" height=\"209\" viewBox=\"0 0 656 209\"";
    skin.extra = "<g id=\"saveframe\"><title>Save</title><rect width=\"9\" height=\"9\"/></g>";
    EXPECT_THAT(findingsOf(skin, SkinKind::Control),
                ::testing::Contains("state \"saveframe.focus\" is missing"));
    skin.extra.clear();
    EXPECT_THAT(findingsOf(skin, SkinKind::Control),
                ::testing::Not(::testing::Contains(HasSubstr("saveframe"))));
}

struct ForeignPart {
    const char* what;
    const char* svg;
    const char* finding;
};

std::ostream& operator<<(std::ostream& stream, const ForeignPart& part) {
    return stream << part.what;
}

class SkinForeignPart : public SkinCheck, public ::testing::WithParamInterface<ForeignPart> {};

TEST_P(SkinForeignPart, is_reported) {
    SkinBuilder skin;
    skin.extra = GetParam().svg;
    EXPECT_THAT(findingsOf(skin), ElementsAre(HasSubstr(GetParam().finding)));
}

INSTANTIATE_TEST_SUITE_P(
    parts, SkinForeignPart,
    ::testing::Values(
        ForeignPart{"picture file", "<image xlink:href=\"other.png\" width=\"9\" height=\"9\"/>",
                    "<image> refers to other.png"},
        ForeignPart{"web address", "<image href=\"http://host/x.png\" width=\"9\" height=\"9\"/>",
                    "<image> refers to http://host/x.png"},
        ForeignPart{"script", "<script>run()</script>", "<script>: a skin may run nothing"},
        ForeignPart{"handler", "<rect width=\"9\" height=\"9\" fill=\"none\" onclick=\"run()\"/>",
                    "<rect onclick>: a skin may run nothing"},
        ForeignPart{"paint server", "<rect width=\"9\" height=\"9\" fill=\"url(x.svg#a)\"/>",
                    "<rect> refers to url(x.svg#a)"}));

TEST_F(SkinCheck, survives_references_that_multiply) {
    SkinBuilder skin;
    skin.extra = "<defs><g id=\"x0\"><rect width=\"1\" height=\"1\"/></g>";
    for (int level = 1; level <= 7; ++level)
        skin.extra += QString("<g id=\"x%1\">%2</g>")
                          .arg(level)
                          .arg(QString("<use xlink:href=\"#x%1\"/>").arg(level - 1).repeated(10));
    skin.extra += "</defs>";
    EXPECT_THAT(findingsOf(skin), ::testing::Contains("has too many references"));
}

TEST_F(SkinCheck, reports_references_that_go_in_a_circle) {
    SkinBuilder skin;
    skin.extra = "<g id=\"loop\"><use xlink:href=\"#loop\"/></g>";
    EXPECT_THAT(findingsOf(skin), ElementsAre(HasSubstr("\"loop\" refers to itself")));
    skin.extra = "<defs><g id=\"one\"><use xlink:href=\"#two\"/></g>"
                 "<g id=\"two\"><use xlink:href=\"#one\"/></g></defs><use xlink:href=\"#one\"/>";
    EXPECT_THAT(findingsOf(skin), ::testing::Contains(HasSubstr("refers to itself")));
}

TEST_F(SkinCheck, tells_why_a_file_cannot_be_used) {
    EXPECT_THAT(problemOf("<svg><g></svg>"), HasSubstr("not well-formed, line 1"));
    EXPECT_THAT(problemOf("<html/>"), HasSubstr("not a drawing"));
    EXPECT_THAT(problemOf(""), HasSubstr("not well-formed"));
    EXPECT_THAT(problemOf("<!DOCTYPE svg [<!ENTITY a \"b\">]><svg>&a;</svg>"),
                HasSubstr("document type or entities"));
    EXPECT_FALSE(DissectedSkin("/nowhere/skin.mp4").problem().isEmpty());
}

TEST_F(SkinCheck, command_tells_good_faulty_and_wrong_use_apart) {
    EXPECT_EQ(exitCodeOf({"bar", written(SkinBuilder().text())}), 0) << m_errors;
    SkinBuilder faulty;
    faulty.title.clear();
    EXPECT_EQ(exitCodeOf({"bar", written(faulty.text())}), 1);
    EXPECT_THAT(m_errors, AllOf(HasSubstr("skin.mp4: "), HasSubstr("no <title>")));
    EXPECT_EQ(exitCodeOf({"bar", "/nowhere/skin.mp4"}), 1);
    EXPECT_THAT(m_errors, HasSubstr("/nowhere/skin.mp4: "));
    EXPECT_EQ(exitCodeOf({"window", written(SkinBuilder().text())}), 2);
    EXPECT_EQ(exitCodeOf({"bar"}), 2);
}

TEST_F(SkinCheck, command_draws_the_window_in_its_size) {
    const QString skin = written(SkinBuilder().text());
    const QString picture = skin + ".png";
    ASSERT_EQ(exitCodeOf({"bar", skin, "--render", picture}), 0) << m_errors;
    const QImage image(picture);
    EXPECT_EQ(image.size(), QSize(338, 32));
    EXPECT_EQ(image.pixel(2, 2), qRgb(0x12, 0x18, 0x21));
    EXPECT_EQ(image.pixel(252, 2), qRgb(0x1C, 0x25, 0x30));
}

TEST(contrastOf, follows_the_formula) {
    EXPECT_NEAR(contrastOf(qRgb(0, 0, 0), qRgb(255, 255, 255)), 21.0, 0.001);
    EXPECT_NEAR(contrastOf(qRgb(18, 52, 86), qRgb(18, 52, 86)), 1.0, 0.001);
    EXPECT_NEAR(contrastOf(qRgb(0x77, 0x77, 0x77), qRgb(255, 255, 255)), 4.48, 0.01);
    EXPECT_NEAR(contrastOf(qRgb(255, 0, 0), qRgb(255, 255, 255)), 4.0, 0.01);
}

} // namespace
} // namespace velmorant
