#include "app/commandLine.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace velmorant {
namespace {

TEST(CommandLine, splits_at_stars_alone) {
    struct Case {
        std::string text;
        std::size_t maximum;
        std::vector<std::string> arguments;
    };
    const std::vector<Case> cases = {{"", 9, {}},
                                     {"a b", 9, {"a b"}},
                                     {"a*b", 9, {"a", "b"}},
                                     {"**a***b c**", 9, {"a", "b c"}},
                                     {"a* *b", 9, {"a", " ", "b"}},
                                     {"a*b*c", 2, {"a", "b"}},
                                     {"***", 9, {}}};
    for (const Case& each : cases)
        EXPECT_EQ(splitArguments(each.text, each.maximum), each.arguments) << each.text;
}

TEST(CommandLine, joins_the_programs_arguments_by_single_blanks) {
    EXPECT_EQ(joinArguments({}), "");
    EXPECT_EQ(joinArguments({"/opt/Velmorant", "DVR", "Tools*1"}), "/opt/Velmorant DVR Tools*1");
}

} // namespace
} // namespace velmorant
