// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The words of a text, as they are indexed and looked for: runs of letters and digits in upper
// case, whatever the script; each character of a script without blanks between words (kana, Han,
// Hangul) is a word of its own, so that a phrase finds it inside a sentence. One of the signs
// / : . , - between two digits belongs to the word, so that a date, a time or a number is one. All
// else parts words. Pure; UTF-8; none raises anything.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace logbook::insight {

// Stands between two texts that are indexed as one, so that no phrase reaches from one into the
// next. It is a word that nobody can look for.
inline constexpr std::string_view kTextBreak = "\n\x01\n";

// Called with each word, in upper case, and its first byte and the byte behind it in the text.
using WordSink = std::function<void(std::string_view word, std::size_t begin, std::size_t end)>;
void EachWord(std::string_view text, const WordSink& sink);

// All words in their order.
std::vector<std::string> WordsOf(std::string_view text);

// True if the words of the phrase stand in this order, next to each other, in the text. With
// `last_begins` the last one need only be the beginning of a word. An empty phrase never does.
bool HoldsPhrase(const std::vector<std::string>& words, const std::vector<std::string>& phrase,
                 bool last_begins);

}  // namespace logbook::insight
