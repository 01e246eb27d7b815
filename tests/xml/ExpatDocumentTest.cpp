#include "xml/ExpatDocument.h"

#include "common/StepError.h"
#include "tests/builders/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace velmorant {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

class ExpatDocumentTest : public testing::Test {
  protected:
    std::string path(const std::string& name) const { return m_folder.file(name); }
    std::string write(const std::string& name, const std::string& contents) const {
        std::ofstream(path(name), std::ios::binary) << contents;
        return path(name);
    }
    static std::string read(const std::string& path) {
        std::ostringstream contents;
        contents << std::ifstream(path, std::ios::binary).rdbuf();
        return contents.str();
    }
    static std::string errorOf(const std::function<void()>& step) {
        try {
            step();
        } catch (const StepError& error) {
            return error.what();
        }
        return "no error";
    }

    builders::TemporaryFolder m_folder;
};

std::string samples(int count) {
    std::string text = "<?xml version='1.0' encoding='UTF-8'?>\n<kml source=\"a.MP4\">\n";
    static const char* const names[] = {"utc_Year",   "utc_Month",  "utc_Day",  "utc_Hour",
                                        "utc_Minute", "utc_Second", "Latitude", "Longitude",
                                        "Angle",      "Speed",      "G_sum",    "G_x",
                                        "G_y",        "G_z",        "fix",      "time_base"};
    for (int i = 0; i < count; ++i) {
        text += "<gpsinfo>\n";
        for (const char* name : names)
            text += std::string("<") + name + ">" + std::to_string(i) + ".25</" + name + ">\n";
        text += "</gpsinfo>\n";
    }
    return text + "</kml>\n";
}

TEST_F(ExpatDocumentTest, finds_elements_anywhere_in_document_order) {
    ExpatDocument document;
    document.loadText("<a><b><gpsinfo><Speed>1</Speed></gpsinfo></b>"
                      "<gpsinfo><Speed>2</Speed><gpsinfo><Speed>3</Speed></gpsinfo></gpsinfo></a>");
    ASSERT_EQ(document.selectElements("gpsinfo"), 3U);
    EXPECT_EQ(document.childText(0, "Speed"), "1");
    EXPECT_EQ(document.childText(1, "Speed"), "2");
    EXPECT_EQ(document.childText(2, "Speed"), "3");
}

TEST_F(ExpatDocumentTest, tells_an_absent_child_from_an_empty_one) {
    ExpatDocument document;
    document.loadText("<a><r><x/><y></y></r></a>");
    ASSERT_EQ(document.selectElements("r"), 1U);
    EXPECT_EQ(document.childText(0, "x"), "");
    EXPECT_EQ(document.childText(0, "y"), "");
    EXPECT_EQ(document.childText(0, "z"), std::nullopt);
    EXPECT_EQ(document.childText(1, "x"), std::nullopt);
}

TEST_F(ExpatDocumentTest, takes_the_first_child_of_a_name_and_no_grandchild) {
    ExpatDocument document;
    document.loadText("<a><r><n><x>deep</x></n><x>one</x><x>two</x></r></a>");
    document.selectElements("r");
    EXPECT_EQ(document.childText(0, "x"), "one");
    EXPECT_EQ(document.elementText("x"), "deep");
    EXPECT_EQ(document.elementText("missing"), std::nullopt);
}

TEST_F(ExpatDocumentTest, joins_texts_cdata_and_character_references) {
    ExpatDocument document;
    document.loadText("<r><x>a &amp; <![CDATA[<b>]]>&#x4E2D;<i>c</i>d</x></r>");
    EXPECT_EQ(document.elementText("x"), "a & <b>\xE4\xB8\xAD"
                                         "cd");
}

TEST_F(ExpatDocumentTest, keeps_blanks_of_a_text) {
    ExpatDocument document;
    document.loadText("<r><x>  /card/a  b.MP4 </x></r>");
    EXPECT_EQ(document.elementText("x"), "  /card/a  b.MP4 ");
}

struct Refusal {
    const char* name;
    std::string text;
    const char* reason;
};

TEST_F(ExpatDocumentTest, refuses_bad_input_with_file_line_and_reason) {
    const Refusal refusals[] = {
        {"empty", "", "line 1: no element found"},
        {"unclosed", "<a>\n<b>\n", "line 3: no element found"},
        {"mismatched", "<a>\n</b>", "line 2: mismatched tag"},
        {"ampersand", "<a>\n\nx & y</a>", "line 3: not well-formed"},
        {"markup", "<a>x < y</a>", "line 1: not well-formed"},
        {"two-roots", "<a/>\n<b/>", "line 2: junk after document element"},
        {"doctype", "<?xml version='1.0'?>\n<!DOCTYPE a SYSTEM 'file:///etc/passwd'><a/>",
         "line 2: a document type declaration is not allowed"},
        {"entities", "<!DOCTYPE a [<!ENTITY e 'eeee'>]><a>&e;</a>",
         "line 1: a document type declaration is not allowed"},
        {"unknown-entity", "<a>&nbsp;</a>", "line 1: undefined entity"},
        {"encoding", "<?xml version='1.0' encoding='made-up'?><a/>", "line 1: unknown encoding"},
        {"broken-utf8", "<a>\xC3(</a>", "line 1: not well-formed"},
        {"nul", std::string("<a>\0</a>", 8), "line 1: not well-formed"},
    };
    for (const Refusal& refusal : refusals) {
        SCOPED_TRACE(refusal.name);
        const std::string file = write(refusal.name, refusal.text);
        ExpatDocument document;
        document.loadText("<a><gone/></a>");
        EXPECT_THAT(errorOf([&] { document.load(file); }),
                    StartsWith(file + ": " + refusal.reason));
        EXPECT_EQ(document.selectElements("a"), 0U);
        EXPECT_EQ(document.elementText("gone"), std::nullopt);
    }
}

TEST_F(ExpatDocumentTest, names_the_file_that_cannot_be_read) {
    ExpatDocument document;
    EXPECT_EQ(errorOf([&] { document.load(path("missing.kml")); }),
              path("missing.kml") + ": cannot be opened: No such file or directory");
    EXPECT_EQ(errorOf([&] { document.load(m_folder.path()); }), m_folder.path() + ": is a folder");
}

TEST_F(ExpatDocumentTest, reads_the_encodings_that_the_declaration_names) {
    ExpatDocument document;
    document.loadText("<?xml version='1.0' encoding='ISO-8859-1'?><a>\xE9</a>");
    EXPECT_EQ(document.elementText("a"), "\xC3\xA9");
    const std::string utf16("\xFF\xFE<\0a\0>\0\x2D\x4E<\0/\0a\0>\0", 18);
    document.loadText(utf16);
    EXPECT_EQ(document.elementText("a"), "\xE4\xB8\xAD");
    document.loadText("\xEF\xBB\xBF<a>x</a>");
    EXPECT_EQ(document.elementText("a"), "x");
}

TEST_F(ExpatDocumentTest, refuses_hostile_depth_size_and_number) {
    ExpatDocument document(XmlLimits{.bytes = 4096, .elements = 50, .attributes = 10, .depth = 20});
    std::string deep;
    for (int i = 0; i < 21; ++i)
        deep += "<d>";
    EXPECT_THAT(errorOf([&] { document.loadText(deep); }), HasSubstr("nested too deep"));
    std::string many = "<r>";
    for (int i = 0; i < 60; ++i)
        many += "<d/>";
    EXPECT_THAT(errorOf([&] { document.loadText(many + "</r>"); }), HasSubstr("too many elements"));
    std::string attributes = "<r";
    for (int i = 0; i < 11; ++i)
        attributes += " a" + std::to_string(i) + "=''";
    EXPECT_THAT(errorOf([&] { document.loadText(attributes + "/>"); }),
                HasSubstr("too many attributes"));
    EXPECT_THAT(errorOf([&] { document.loadText("<r>" + std::string(5000, 'x') + "</r>"); }),
                HasSubstr("too large"));
    document.loadText("<r><d/></r>");
    EXPECT_EQ(document.selectElements("d"), 1U);
}

TEST_F(ExpatDocumentTest, saves_what_it_loads_again_alike) {
    const std::string list = "<?xml version='1.0'?>\n<mp4list>\n<Data>\n"
                             "<x2>2024/05/01  10:30:45</x2>\n"
                             "<x3>/card/a &amp; b/\xE8\xBD\xA6 103045.MP4</x3>\n</Data>\n"
                             "<empty/><n a=\"1 &lt; &quot;2&quot;\">x<i>y</i>z</n></mp4list>";
    ExpatDocument document;
    document.loadText(list);
    document.save(path("flow.xml"));
    EXPECT_EQ(read(path("flow.xml")),
              "<?xml version=\"1.0\"?>\n" + list.substr(list.find("<mp4list>")) + "\n");
    ExpatDocument again;
    again.load(path("flow.xml"));
    ASSERT_EQ(again.selectElements("Data"), 1U);
    EXPECT_EQ(again.childText(0, "x2"), "2024/05/01  10:30:45");
    EXPECT_EQ(again.childText(0, "x3"), "/card/a & b/\xE8\xBD\xA6 103045.MP4");
    EXPECT_EQ(again.elementText("n"), "xyz");
}

TEST_F(ExpatDocumentTest, keeps_line_ends_given_as_references_over_a_save) {
    ExpatDocument document;
    document.loadText("<r a='x&#10;y&#9;z'>1&#13;&#10;2</r>");
    document.save(path("ends.xml"));
    document.load(path("ends.xml"));
    EXPECT_EQ(document.elementText("r"), "1\r\n2");
    EXPECT_THAT(read(path("ends.xml")), HasSubstr("x&#10;y&#9;z"));
}

TEST_F(ExpatDocumentTest, writes_an_empty_file_for_an_empty_document) {
    ExpatDocument document;
    EXPECT_THROW(document.loadText("<a>&</a>"), StepError);
    document.save(path("flow.xml"));
    EXPECT_TRUE(std::filesystem::exists(path("flow.xml")));
    EXPECT_EQ(read(path("flow.xml")), "");
}

TEST_F(ExpatDocumentTest, leaves_the_old_file_whole_when_a_save_fails) {
    ExpatDocument document;
    document.loadText("<a/>");
    std::filesystem::create_directories(path("folder/inside"));
    EXPECT_THAT(errorOf([&] { document.save(path("folder")); }),
                StartsWith(path("folder") + ": cannot be written"));
    EXPECT_FALSE(std::filesystem::exists(path("folder.new")));
    EXPECT_TRUE(std::filesystem::exists(path("folder/inside")));
    EXPECT_THAT(errorOf([&] { document.save(path("nowhere/x.xml")); }),
                StartsWith(path("nowhere/x.xml") + ": cannot be written"));
}

TEST_F(ExpatDocumentTest, reads_the_attributes_of_the_root_alone) {
    ExpatDocument document;
    EXPECT_EQ(document.rootAttribute("a"), std::nullopt);
    document.loadText("<r a='1 &amp; 2' b=''><x a='3' c='4'/></r>");
    EXPECT_EQ(document.rootAttribute("a"), "1 & 2");
    EXPECT_EQ(document.rootAttribute("b"), "");
    EXPECT_EQ(document.rootAttribute("c"), std::nullopt);
    EXPECT_EQ(document.rootAttribute("d"), std::nullopt);
}

TEST_F(ExpatDocumentTest, reads_the_attributes_of_the_first_element_of_a_name) {
    ExpatDocument document;
    EXPECT_EQ(document.elementAttribute("x", "a"), std::nullopt);
    document.loadText("<r a='1'><y><x a='2' b='3'/></y><x a='4' c='5'/></r>");
    EXPECT_EQ(document.elementAttribute("x", "a"), "2");
    EXPECT_EQ(document.elementAttribute("x", "b"), "3");
    EXPECT_EQ(document.elementAttribute("x", "c"), std::nullopt);
    EXPECT_EQ(document.elementAttribute("z", "a"), std::nullopt);
}

TEST_F(ExpatDocumentTest, reads_an_hour_of_samples_over_many_pieces) {
    const std::string file = write("output.kml", samples(3600));
    ExpatDocument document;
    const auto start = std::chrono::steady_clock::now();
    document.load(file);
    ASSERT_EQ(document.selectElements("gpsinfo"), 3600U);
    std::size_t length = 0;
    for (std::size_t i = 0; i < 3600; ++i)
        for (const char* child : {"utc_Hour", "Latitude", "Longitude", "Speed", "G_z"})
            length += document.childText(i, child)->size();
    const auto spent = std::chrono::steady_clock::now() - start;
    RecordProperty(
        "microseconds",
        static_cast<int>(std::chrono::duration_cast<std::chrono::microseconds>(spent).count()));
    EXPECT_EQ(document.childText(3599, "G_z"), "3599.25");
    EXPECT_EQ(length, 5U * (10 * 4 + 90 * 5 + 900 * 6 + 2600 * 7));
}

} // namespace
} // namespace velmorant
