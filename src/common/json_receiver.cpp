#include "common/json_receiver.hpp"

namespace kinovane::json {

std::string_view nameOf(Kind kind) {
    switch (kind) {
    case Kind::text:
        return "a string";
    case Kind::integer:
        return "an integer";
    case Kind::real:
        return "a number";
    case Kind::boolean:
        return "true or false";
    case Kind::list:
        return "a list";
    case Kind::map:
    case Kind::record:
        break;
    }
    return "an object";
}

std::string quotedNumber(std::string_view text) {
    constexpr std::size_t longest = 40;
    return text.size() <= longest ? std::string(text) : std::string(text.substr(0, longest)) + "…";
}

} // namespace kinovane::json
