// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <concepts>
#include <string>
#include <string_view>
#include <utility>

namespace kinovane::tool {

/// Markup of this program. It can be made of a string literal only, so that no text of a document becomes
/// markup.
class Markup {
  public:
    consteval Markup(const char* literal) // NOLINT(google-explicit-constructor): a literal is markup
        : text_(literal) {}

    constexpr std::string_view text() const noexcept { return text_; }

  private:
    std::string_view text_;
};

/// Text of a document or of the file system. It is escaped when it is written.
struct Text {
    explicit Text(std::string_view text) : value(text) {}

    std::string_view value;
};

/// The text for an element or an attribute in quotes. Bytes that are not UTF-8 and characters that HTML does
/// not allow become U+FFFD.
std::string escaped(std::string_view text);

/// An address of a file or of data, in ASCII and without a character that has a meaning in HTML.
class Url {
  public:
    /// The relative address of a path. Every character but letters, digits, "-", "_", "." and "/" is
    /// percent-encoded, so that no part of the path is taken for a scheme, a query or a fragment.
    static Url relative(std::string_view path);

    /// An address that holds the bytes themselves.
    static Url data(Markup mediaType, std::string_view bytes);

    const std::string& text() const noexcept { return text_; }

  private:
    explicit Url(std::string text) : text_(std::move(text)) {}

    std::string text_;
};

/// A part of an HTML document. It is written in order; all that comes from outside this program is escaped.
class Html {
  public:
    Html& operator<<(Markup markup);
    Html& operator<<(Text text);
    Html& operator<<(const Url& url);
    Html& operator<<(const Html& part);
    Html& operator<<(std::integral auto number) {
        html_ += std::to_string(number);
        return *this;
    }
    Html& operator<<(double number); ///< With six digits after the point.

    bool empty() const noexcept { return html_.empty(); }
    const std::string& text() const noexcept { return html_; }

  private:
    std::string html_;
};

/// The bytes in base64.
std::string base64(std::string_view bytes);

} // namespace kinovane::tool
