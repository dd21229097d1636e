// SPDX-License-Identifier: Apache-2.0

#include "storyboard/html.hpp"

#include <string>

#include <gtest/gtest.h>

namespace kinovane::tool {

namespace {

TEST(Html, EscapesText) {
    const struct {
        const char* sentence;
        std::string text;
        std::string expected;
    } rows[]{
        {"nothing", "", ""},
        {"an element", "<b>&</b>", "&lt;b&gt;&amp;&lt;/b&gt;"},
        {"the end of an attribute", R"(" onclick='x')", "&quot; onclick=&#39;x&#39;"},
        {"an entity", "&lt;", "&amp;lt;"},
        {"letters of any script", "Bø 灯 🏮 ليل", "Bø 灯 🏮 ليل"},
        {"line breaks and tabs", "a\n\tb", "a\n\tb"},
        {"control characters", std::string("a\0b\x1b\r\x7f", 6), "a\uFFFDb\uFFFD\uFFFD\uFFFD"},
        {"a control character beyond ASCII", "\u0085", "\uFFFD"},
        {"a noncharacter", "\uFFFE\uFDD0", "\uFFFD\uFFFD"},
        {"bytes that are not UTF-8", "a\xff\xc3<", "a\uFFFD\uFFFD&lt;"},
        {"an overlong less-than sign", "\xc0\xbc", "\uFFFD\uFFFD"},
    };
    for (const auto& [sentence, text, expected] : rows)
        EXPECT_EQ(escaped(text), expected) << sentence;
}

TEST(Html, EscapesAllButItsOwnMarkup) {
    Html part;
    part << "<b>" << Text("<i>") << "</b>";
    Html html;
    html << "<p title='" << Text("'") << "'>" << 7 << " " << 0.5 << part << "</p>";
    EXPECT_EQ(html.text(), "<p title='&#39;'>7 0.500000<b>&lt;i&gt;</b></p>");
}

TEST(Url, EncodesEveryCharacterWithAMeaning) {
    const struct {
        std::string path;
        std::string expected;
    } rows[]{
        {"frames/shot-01.png", "frames/shot-01.png"},
        {"../a film/50% #1?.png", "../a%20film/50%25%20%231%3F.png"},
        {"javascript:alert(1)", "javascript%3Aalert%281%29"},
        {R"("><script>)", "%22%3E%3Cscript%3E"},
        {"ø/\xff", "%C3%B8/%FF"},
    };
    for (const auto& [path, expected] : rows)
        EXPECT_EQ(Url::relative(path).text(), expected);
}

TEST(Url, HoldsDataInBase64) {
    EXPECT_EQ(Url::data("image/png", "<").text(), "data:image/png;base64,PA==");
    const struct {
        std::string bytes;
        std::string expected;
    } rows[]{{"", ""},
             {"f", "Zg=="},
             {"fo", "Zm8="},
             {"foo", "Zm9v"},
             {"foob", "Zm9vYg=="},
             {"fooba", "Zm9vYmE="},
             {"foobar", "Zm9vYmFy"},
             {std::string("\0\xff\xfe", 3), "AP/+"}};
    for (const auto& [bytes, expected] : rows)
        EXPECT_EQ(base64(bytes), expected);
}

} // namespace

} // namespace kinovane::tool
