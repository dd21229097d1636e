// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>
#include <string_view>

namespace simulator::film {

/// A recorded PNG, WAV or MP4 file with the text added as metadata, which players ignore. Different texts
/// make files with different digests.
std::string mediaFile(std::string_view recording, const std::string& text);

} // namespace simulator::film
