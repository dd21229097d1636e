// SPDX-License-Identifier: Apache-2.0

#include "timeline/xml_writer.hpp"

#include <gtest/gtest.h>

namespace kinovane::tool {

namespace {

TEST(XMLWriter, WritesAnIndentedDocument) {
    XMLWriter xml("a", {{"b", "1"}, {"c", "2"}});
    xml.begin("d");
    xml.text("e", "f");
    xml.end();
    xml.empty("g", {{"h", ""}});
    EXPECT_EQ(xml.document(), R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE a>
<a b="1" c="2">
  <d>
    <e>f</e>
  </d>
  <g h=""/>
</a>
)");
}

TEST(XMLWriter, EscapesText) {
    const struct {
        const char* sentence;
        std::string_view text;
        const char* expected;
    } rows[]{
        {"markup", "<a>&amp;</a>", "&lt;a&gt;&amp;amp;&lt;/a&gt;"},
        {"quotes", "\"'", "&quot;&apos;"},
        {"the end of a section", "]]>", "]]&gt;"},
        {"line breaks", "\t\n\r", "&#9;&#10;&#13;"},
        {"control characters", std::string_view("\0\x01\x1b\x7f", 4), "\uFFFD\uFFFD\uFFFD\x7f"},
        {"characters that XML does not have", "\uFFFE\uFFFF", "\uFFFD\uFFFD"},
        {"bytes that are not UTF-8", "\xff\xed\xa0\x80", "\uFFFD\uFFFD\uFFFD\uFFFD"},
        {"any language", "日本 مرحبا \U0001F3AC", "日本 مرحبا \U0001F3AC"},
    };
    for (const auto& [sentence, text, expected] : rows) {
        XMLWriter xml("a", {{"b", std::string(text)}});
        xml.text("c", text);
        const std::string line = expected;
        EXPECT_EQ(xml.document(), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE a>\n<a b=\"" + line +
                                      "\">\n  <c>" + line + "</c>\n</a>\n")
            << sentence;
    }
}

} // namespace

} // namespace kinovane::tool
