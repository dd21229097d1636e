// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kinovane::test {

/// A page of docs/guide.
class GuidePage {
  public:
    /// `name` is the name of a file there, such as "errors.md". Throws std::runtime_error if it cannot be
    /// read.
    explicit GuidePage(std::string_view name);

    /// The block after the comment "<!-- printed by PROGRAM -->"; empty if the page has none.
    std::string printedBy(std::string_view program) const;

    /// Every text in `…` between the lines "<!-- NAME -->" and "<!-- end of NAME -->", in order.
    std::vector<std::string> codeIn(std::string_view name) const;

  private:
    std::string text_;
};

} // namespace kinovane::test
