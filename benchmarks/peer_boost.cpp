// SPDX-License-Identifier: Apache-2.0

#include <stdexcept>

#include <boost/json/parse.hpp>

#include "file_text.hpp"
#include "peer_json.hpp"

namespace kinovane::benchmarks {

void parseWithBoost(const std::filesystem::path& project) {
    const FileText text(project);
    const auto view = text.view();
    const boost::json::value tree = boost::json::parse(boost::json::string_view(view.data(), view.size()));
    if (!tree.is_object())
        throw std::runtime_error("not a project document");
}

} // namespace kinovane::benchmarks
