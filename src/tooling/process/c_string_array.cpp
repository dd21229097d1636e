// SPDX-License-Identifier: Apache-2.0

#include "tooling/process/c_string_array.hpp"

namespace kinovane {

char* const* CStringArray::data() {
    pointers_.clear();
    pointers_.reserve(texts_.size() + 1);
    for (std::string& text : texts_)
        pointers_.push_back(text.data());
    pointers_.push_back(nullptr);
    return pointers_.data();
}

} // namespace kinovane
