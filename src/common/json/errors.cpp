// SPDX-License-Identifier: Apache-2.0

#include <utility>

#include <kinovane/json.hpp>

namespace kinovane {

struct JSONError::State {
    std::string path;
    std::string message;
};

JSONError::JSONError(std::string path, std::string message)
    : state_(std::make_shared<const State>(State{std::move(path), std::move(message)})) {}

JSONError::JSONError(const JSONError&) noexcept = default;
JSONError& JSONError::operator=(const JSONError&) noexcept = default;
JSONError::~JSONError() = default;

const char* JSONError::what() const noexcept { return state_->message.c_str(); }
const std::string& JSONError::path() const noexcept { return state_->path; }

JSONDecodingError::~JSONDecodingError() = default;
JSONEncodingError::~JSONEncodingError() = default;

} // namespace kinovane
