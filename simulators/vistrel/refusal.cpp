#include "refusal.hpp"

#include "json_text.hpp"

#include <cerrno>
#include <string>

namespace vistrel {

void refuseForSystem(std::string_view attempt, const std::filesystem::path& file, std::error_code reason) {
    throw Refusal("cannot " + std::string(attempt) + " " + jsonQuoted(file.native()) + ": " +
                  reason.message());
}

std::error_code lastSystemError() { return {errno, std::system_category()}; }

} // namespace vistrel
