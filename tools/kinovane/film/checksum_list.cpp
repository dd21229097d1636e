// SPDX-License-Identifier: Apache-2.0

#include "film/checksum_list.hpp"

#include <optional>
#include <system_error>

#include "film/file_content.hpp"
#include "session/failure.hpp"
#include "terminal/shown_text.hpp"

namespace kinovane::tool {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view algorithm = "sha256:";
constexpr std::size_t digits = 64;

std::string escaped(std::string_view path) {
    std::string result;
    for (const char character : path)
        if (character == '\\')
            result += "\\\\";
        else if (character == '\n')
            result += "\\n";
        else if (character == '\r')
            result += "\\r";
        else
            result += character;
    return result;
}

std::optional<std::string> unescaped(std::string_view text) {
    std::string result;
    for (std::size_t index = 0; index < text.size(); ++index) {
        if (text[index] != '\\') {
            result += text[index];
            continue;
        }
        const char code = ++index < text.size() ? text[index] : '\0';
        if (code == '\\')
            result += '\\';
        else if (code == 'n')
            result += '\n';
        else if (code == 'r')
            result += '\r';
        else
            return std::nullopt;
    }
    return result;
}

/// Nothing when the text is not a digest.
std::optional<std::string> digestOf(std::string_view text) {
    std::string digest(algorithm);
    for (const char character : text)
        if ((character >= '0' && character <= '9') || (character >= 'a' && character <= 'f'))
            digest += character;
        else if (character >= 'A' && character <= 'F')
            digest += static_cast<char>(character - 'A' + 'a');
        else
            return std::nullopt;
    return digest;
}

std::optional<Checksum> checksumOf(std::string_view line) {
    const bool isEscaped = line.starts_with('\\');
    if (isEscaped)
        line.remove_prefix(1);
    if (line.ends_with('\r'))
        line.remove_suffix(1);
    if (line.size() < digits + 3 || line[digits] != ' ' ||
        (line[digits + 1] != ' ' && line[digits + 1] != '*'))
        return std::nullopt;
    const std::optional<std::string> digest = digestOf(line.substr(0, digits));
    line.remove_prefix(digits + 2);
    std::optional<std::string> path = isEscaped ? unescaped(line) : std::string(line);
    if (!digest || !path)
        return std::nullopt;
    return Checksum{std::move(*path), *digest};
}

} // namespace

std::string checksumLine(const Checksum& checksum) {
    const std::string path = escaped(checksum.path);
    return (path == checksum.path ? "" : "\\") + checksum.digest.substr(algorithm.size()) + "  " + path +
           "\n";
}

std::vector<Checksum> readChecksumList(const fs::path& file) {
    std::vector<Checksum> list;
    std::error_code error;
    const std::string text = contentOf(file, error);
    if (error)
        throw fs::filesystem_error("cannot read", file, error);
    std::string_view rest = text;
    for (std::size_t number = 1; !rest.empty(); ++number) {
        const std::size_t end = rest.find('\n');
        std::optional<Checksum> checksum = checksumOf(rest.substr(0, end));
        if (!checksum)
            throw CommandError(
                ExitStatus::fileSystem,
                shownPath(file.string()) + ":" + std::to_string(number) +
                    R"(: not 64 hexadecimal digits, a space, a second space or "*", and a path)");
        list.push_back(std::move(*checksum));
        rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
    }
    return list;
}

} // namespace kinovane::tool
