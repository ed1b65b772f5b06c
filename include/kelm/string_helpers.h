// Helpers for narrow strings: quoted identifiers, comments, and path names with '.' between their parts.
// Bytes only: no encoding and no locale is known; case and character classes are those of the C locale.
#pragma once

#include <kelm/export.h>

#include <cstddef>
#include <string>
#include <vector>

namespace kelm {

// Two sets of characters are meant below. "White space" is tab, line feed, carriage return and blank;
// "isspace" adds vertical tab and form feed. Letters are the 26 of ASCII; bytes from 0x80 up belong to no
// class and have no case. "In place" functions leave the string alone where nothing applies. What
// allocates may throw std::bad_alloc; nothing else is thrown.

// White space and single characters

/// True when `c` is white space; every int is allowed.
KELM_EXPORT bool whitespace(int c);

/// Removes the white space at the end.
KELM_EXPORT void remove_trailing_whitespace(std::string& s);

/// Removes the white space at the start.
KELM_EXPORT void remove_leading_whitespace(std::string& s);

/// Removes one `c` at the end, if it is there.
KELM_EXPORT void remove_trailing_char(std::string& s, char c);

/// Moves `pos` past isspace characters, at most to the end; a position beyond the end stays.
KELM_EXPORT void str_skip_all_white_chars(std::size_t& pos, const std::string& s);

/// True for what may stand in an identifier: a letter, a digit, '_', '#' or '$'.
KELM_EXPORT bool str_is_identifier_char(char c);

/// Removes every carriage return; true if there was one.
KELM_EXPORT bool strip_carrige_return(std::string& s);

/// Puts a carriage return before each line feed that has none, except before a line feed at position 0.
///
/// \returns true if any was put in
KELM_EXPORT bool add_carrige_return(std::string& s);

// Finding and removing

/// True when `s` begins with `p`, blind to case; an empty `p` always fits.
KELM_EXPORT bool string_starts_with(const std::string& s, const std::string& p);

/// True when `s` ends with `p`, blind to case; an empty `p` always fits.
KELM_EXPORT bool string_ends_with(const std::string& s, const std::string& p);

/// Looks for `x` in `s`, from the first character that is not isspace.
///
/// The scan never goes back: where a started match breaks, the character that broke it may start the next
/// one, those before it may not. So "ab" is found in "aab", but "aab" is missed in "aaab".
///
/// \param no_case  true: letters match in either case
/// \returns the position in `s`; for an empty `x` the one where the scan starts;
///          static_cast<std::size_t>(-1) when `x` is not found and when `s` is empty or all isspace
KELM_EXPORT std::size_t str_contains_str(const std::string& s, const std::string& x, bool no_case);

/// Skips as many characters of `s` as `x` is long, without comparing them, and then isspace characters. Never
/// goes beyond the terminator.
///
/// \param s  may be null, which counts as ""
/// \param x  may be null, which counts as ""
/// \returns a position in `s`, valid as long as `s` is; for a null `s` an empty text that lives for ever
KELM_EXPORT const char* remove_substr_from_begining(const char* s, const char* x);

/// Removes `word` from the start of `s`, blind to case, when it stands there as a whole word.
///
/// Leading isspace characters are passed over and stay. The word is whole when the string ends behind it or
/// the next character is none of an identifier (`str_is_identifier_char`). Characters behind the word stay,
/// also white space.
///
/// \param quoted  true: a '"' before the word and one behind it, each if it is there, are removed with it
/// \returns true if the word was there; false leaves `s` as it was, also when it is empty or all isspace
KELM_EXPORT bool remove_word(std::string& s, const std::string& word, bool quoted);

// Quotes and delimiters: a pair needs two characters, so a string of one quote has none

/// Removes one pair of '"' around the string; without `double_only` it may be a pair of '\'' instead.
KELM_EXPORT void strip_quotes(std::string& s, bool double_only);

/// Removes one pair around the string: two '"', two '\'', two '`', or '[' and ']'.
KELM_EXPORT void trim_quotes(std::string& s);

/// Removes every '"', wherever it stands.
KELM_EXPORT void str_remove_double_quotes(std::string& s);

/// A copy of `s` without one surrounding pair of `open` and `close`; a `close` of 0 means the same as `open`.
KELM_EXPORT std::string strip_delimiter(const std::string& s, char open, char close);

/// Removes one surrounding pair of `open` and `close` in place; a `close` of 0 means the same as `open`.
///
/// \returns true if there was a pair
KELM_EXPORT bool strip_delimiter2(std::string& s, char open, char close);

/// A copy of the path name `s` with one pair of delimiters removed from each part: "[a].[b]" gives "a.b".
///
/// Parts end at every '.', also at one between delimiters; empty parts stay.
///
/// \param close  0 means the same as `open`
KELM_EXPORT std::string strip_delimiting_char_from_path_names(const std::string& s, char open, char close);

/// Splits `s` at every character of `separators` into `out`, which is emptied first.
///
/// Empty tokens are dropped. Each token loses the white space at its ends; one of nothing but white space
/// stays as an empty string.
///
/// \param separators  ends at its first zero byte; without any, `s` is one token
/// \returns the size of `out`
KELM_EXPORT std::size_t string_to_vector(std::string s, const std::string& separators,
                                         std::vector<std::string>& out);

// Comments

/// Removes each comment from "--" to the end of its line, the line end included: a line feed, a carriage
/// return, or a carriage return and a line feed. A comment that no line end follows stays. Quotes are not
/// looked at.
KELM_EXPORT void strip_hyphen_comments(std::string& s);

/// Removes block comments, then does `strip_hyphen_comments`.
///
/// A block goes from the first "/*" to the first "*/" of the string, as often as there are both. A "*/"
/// before the first "/*" ends this. Comments do not nest; the two marks may share their '*', so that "/*/"
/// is a comment. Quotes are not looked at.
KELM_EXPORT void str_strip_comments(std::string& s);

// Names

/// Makes a plural: "es" behind a last 'x', "ies" in place of a last 'y', else "s" behind the name; the last
/// letter counts in either case, what is added is lower case. "Key" gives "Keies", the empty name "s".
KELM_EXPORT void pluralize_name(std::string& name);

/// Makes the first character and each one behind white space upper case, all others lower case.
KELM_EXPORT void mixed_case(std::string& s);

/// Makes each letter lower case.
KELM_EXPORT void lower_case(std::string& s);

} // namespace kelm
