// Signatures as text, and from the surroundings.
// Times are written as they are compared: by their letters.
#include "log/signature.h"

#include "printing/text.h"

#include <charconv>
#include <cstdlib>
#include <ctime>
#include <regex>
#include <stdexcept>

#include <pwd.h>
#include <unistd.h>

namespace schema {

namespace {

constexpr std::string_view time_key = "time=";
constexpr std::string_view author_key = ";author=";
constexpr std::size_t time_length = 20;

bool is_time(const std::string& text) {
    static const std::regex form("[0-9]{4}-(0[1-9]|1[0-2])-(0[1-9]|[12][0-9]|3[01])T"
                                 "([01][0-9]|2[0-3]):[0-5][0-9]:[0-5][0-9]Z");
    return std::regex_match(text, form);
}

std::string text_of(std::time_t when) {
    std::tm parts{};
    if (!::gmtime_r(&when, &parts) || parts.tm_year > 9999 - 1900 || parts.tm_year < 0)
        throw std::runtime_error("the time is not in the years 1900 to 9999");
    char text[time_length + 1];
    std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &parts);
    return text;
}

std::string present_time() {
    const char* given = std::getenv("SOURCE_DATE_EPOCH");
    if (!given || !*given) return text_of(std::time(nullptr));
    const std::string_view text = given;
    std::time_t seconds = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), seconds);
    if (error != std::errc() || end != text.data() + text.size())
        throw std::runtime_error("SOURCE_DATE_EPOCH is no number of seconds: \"" + std::string(text) + '"');
    return text_of(seconds);
}

std::string present_user() {
    if (const char* given = std::getenv("USER"); given && *given) return given;
    const passwd* known = ::getpwuid(::geteuid());
    return known ? known->pw_name : "unknown";
}

} // namespace

std::string to_text(const signature& from) {
    return std::string(time_key) + from.time + std::string(author_key) + from.author;
}

signature signature_of(std::string_view text) {
    if (!text.starts_with(time_key)) return {};
    text.remove_prefix(time_key.size());
    signature found{{}, std::string(text.substr(0, time_length))};
    text.remove_prefix(found.time.size());
    if (!is_time(found.time) || !text.starts_with(author_key)) return {};
    found.author = text.substr(author_key.size());
    return found;
}

signature complete(signature given) {
    if (given.author.empty()) given.author = present_user();
    if (given.time.empty()) given.time = present_time();
    if (printable(given.author) != given.author)
        throw std::runtime_error("the author \"" + given.author + "\" is no plain text");
    if (!is_time(given.time))
        throw std::runtime_error("the time \"" + given.time + "\" is not of the form 2026-11-21T10:00:00Z");
    return given;
}

} // namespace schema
