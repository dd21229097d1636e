// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kinovane::tool {

/// Writes an XML document, one element a line. All text is escaped here; characters that XML 1.0 does not
/// have, such as most control characters, become U+FFFD.
class XMLWriter {
  public:
    using Attributes = std::vector<std::pair<std::string_view, std::string>>;

    /// Begins a document with this root element.
    explicit XMLWriter(std::string_view root, const Attributes& attributes = {});

    /// Begins an element, in which everything is put until `end`.
    void begin(std::string_view name, const Attributes& attributes = {});

    void end();

    /// An element without content.
    void empty(std::string_view name, const Attributes& attributes);

    /// An element that holds only text.
    void text(std::string_view name, std::string_view text);

    /// Ends all elements and returns the document.
    std::string document();

  private:
    void line(const std::string& markup);
    static std::string startTag(std::string_view name, const Attributes& attributes);

    std::string document_;
    std::vector<std::string> open_;
};

} // namespace kinovane::tool
